#pragma once

#include <filesystem>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace clip
{

/// A folder into which a program puts its results all at once. Each file is written beside its place under a name of
/// its own; `Publish` then renames them, so that a run that fails leaves the results of an earlier one as they were.
class OutputFolder
{
public:
    /// Makes the folder and its parents where they are missing.
    /// \throws std::system_error
    explicit OutputFolder(std::filesystem::path folder);
    OutputFolder(OutputFolder const &) = delete;
    OutputFolder & operator=(OutputFolder const &) = delete;

    /// Removes what was written and not published.
    ~OutputFolder();

    /// Writes a file beside its place.
    /// \throws std::system_error when the file cannot be opened, or not be written to its end, and for a second file of
    /// one name
    void Write(std::string const & name, std::function<void(std::ostream &)> const & write);

    /// Refuses a place that is taken by something other than a file.
    /// \throws std::system_error
    void CheckPlaces() const;

    /// Moves every file to its place, over an earlier one of that name, when CheckPlaces has passed them all.
    /// \throws std::system_error
    /// \return the places, in the order of writing
    std::vector<std::filesystem::path> Publish();

private:
    struct Pending
    {
        std::filesystem::path beside;
        std::filesystem::path place;
    };

    std::filesystem::path m_Folder;
    std::vector<Pending> m_Pending;
};

} // namespace clip
