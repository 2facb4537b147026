#include "clip/program.h"

#include "clip/arguments.h"

#include <exception>

namespace clip
{

namespace
{

constexpr int k_Done = 0;
constexpr int k_Failed = 1;
constexpr int k_WrongInput = 2;

} // namespace

int RunProgram(std::string const & name, std::ostream & output, std::ostream & errors,
               std::function<void()> const & program)
{
    try
    {
        program();
        if (!output.flush())
        {
            throw std::runtime_error("cannot write to standard output");
        }
        return k_Done;
    }
    catch (UsageError const & error)
    {
        errors << name << ": " << error.what() << "\nTry \"" << name << " --help\".\n";
        return k_WrongInput;
    }
    catch (RequestError const & error)
    {
        errors << name << ": " << error.what() << '\n';
        return k_WrongInput;
    }
    catch (InputError const & error)
    {
        errors << error.what() << '\n';
        return k_WrongInput;
    }
    catch (std::exception const & error)
    {
        errors << name << ": " << error.what() << '\n';
        return k_Failed;
    }
}

} // namespace clip
