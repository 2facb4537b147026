#include "clip/output_folder.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <system_error>
#include <utility>

namespace clip
{

namespace
{

[[noreturn]] void FailToWrite(std::filesystem::path const & place, std::error_code error)
{
    throw std::system_error(error, "cannot write " + place.string());
}

/// The error of the last call into the system; streams do not promise to leave one.
std::error_code LastError()
{
    return {errno != 0 ? errno : EIO, std::generic_category()};
}

} // namespace

OutputFolder::OutputFolder(std::filesystem::path folder) : m_Folder(std::move(folder))
{
    std::error_code error;
    std::filesystem::create_directories(m_Folder, error);
    if (error)
    {
        throw std::system_error(error, "cannot make the folder " + m_Folder.string());
    }
}

OutputFolder::~OutputFolder()
{
    for (Pending const & file : m_Pending)
    {
        std::error_code ignored;
        std::filesystem::remove(file.beside, ignored);
    }
}

void OutputFolder::Write(std::string const & name, std::function<void(std::ostream &)> const & write)
{
    Pending file{m_Folder / ("." + name + ".partial"), m_Folder / name};
    if (std::any_of(m_Pending.begin(), m_Pending.end(),
                    [&file](Pending const & other) { return other.place == file.place; }))
    {
        FailToWrite(file.place, std::make_error_code(std::errc::file_exists));
    }
    errno = 0;
    std::ofstream stream(file.beside, std::ios::binary);
    if (!stream)
    {
        FailToWrite(file.place, LastError());
    }
    m_Pending.push_back(file);
    write(stream);
    stream.close();
    if (!stream)
    {
        FailToWrite(file.place, LastError());
    }
}

void OutputFolder::CheckPlaces() const
{
    for (Pending const & file : m_Pending)
    {
        if (std::filesystem::exists(file.place) && !std::filesystem::is_regular_file(file.place))
        {
            FailToWrite(file.place, std::make_error_code(std::errc::file_exists));
        }
    }
}

std::vector<std::filesystem::path> OutputFolder::Publish()
{
    CheckPlaces();
    std::vector<std::filesystem::path> places;
    while (!m_Pending.empty())
    {
        Pending const & file = m_Pending.front();
        std::error_code error;
        std::filesystem::rename(file.beside, file.place, error);
        if (error)
        {
            FailToWrite(file.place, error);
        }
        places.push_back(file.place);
        m_Pending.erase(m_Pending.begin());
    }
    return places;
}

} // namespace clip
