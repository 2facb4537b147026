#include "signal/malloc_faults.h"

namespace
{

struct Ledger
{
    bool isOpen = false;
    bool refuses = false;
    std::size_t bytes = 0;
    long requests = 0;
};

// Constant-initialised: memory is asked for before any constructor runs.
constinit Ledger ledger;

} // namespace

namespace test_support
{

MallocFaults::MallocFaults(std::size_t bytes, Answer answer)
{
    ledger = Ledger{.isOpen = true, .refuses = answer == Answer::Refuse, .bytes = bytes};
}

MallocFaults::~MallocFaults()
{
    ledger = Ledger{};
}

// A member, so that it can be read while one lives and no longer.
long MallocFaults::GetRequests() const // NOLINT(readability-convert-member-functions-to-static)
{
    return ledger.requests;
}

} // namespace test_support

// The linker's names for the calls of this binary and for the function itself.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" void * __real_malloc(std::size_t size);

extern "C" void * __wrap_malloc(std::size_t size)
{
    if (ledger.isOpen && size == ledger.bytes)
    {
        ++ledger.requests;
        if (ledger.refuses)
        {
            return nullptr;
        }
    }
    return __real_malloc(size);
}
// NOLINTEND(bugprone-reserved-identifier)
