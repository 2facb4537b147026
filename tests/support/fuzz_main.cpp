/// \file
/// Drives a fuzz target without a fuzzing engine: every file of a corpus folder, then a fixed number of seeded
/// mutations of them. The same arguments give the same inputs on every machine, up to where time runs out.
///
///     <target> <corpus> [--runs N] [--seconds S] [--seed N] [--save FILE]
///
/// A target reports a fault by ending the process. `--save` writes every input to the file before it is run, so that
/// the one that failed is left there; put it in the corpus once the fault is mended.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size);

namespace
{

using Input = std::vector<std::uint8_t>;
using Random = std::mt19937_64;

struct Options
{
    std::string corpus;
    std::string save;
    unsigned long long runs = 20000;
    unsigned long long seconds = 5;
    unsigned long long seed = 1;
};

std::optional<Options> ParseOptions(int count, char const * const * arguments)
{
    Options options;
    for (int i = 1; i < count; ++i)
    {
        std::string_view const name = arguments[i];
        if (name.substr(0, 2) != "--")
        {
            options.corpus = name;
            continue;
        }
        if (++i == count)
        {
            return std::nullopt;
        }
        char const * const value = arguments[i];
        if (name == "--save")
        {
            options.save = value;
        }
        else if (name == "--runs")
        {
            options.runs = std::strtoull(value, nullptr, 10);
        }
        else if (name == "--seconds")
        {
            options.seconds = std::strtoull(value, nullptr, 10);
        }
        else if (name == "--seed")
        {
            options.seed = std::strtoull(value, nullptr, 10);
        }
        else
        {
            return std::nullopt;
        }
    }
    return options.corpus.empty() ? std::nullopt : std::optional<Options>(options);
}

/// The files of the folder, in the order of their names so that every machine sees the same corpus.
std::vector<Input> ReadCorpus(std::string const & folder)
{
    std::vector<std::filesystem::path> paths;
    std::error_code error;
    for (auto const & entry : std::filesystem::directory_iterator(folder, error))
    {
        if (entry.is_regular_file())
        {
            paths.push_back(entry.path());
        }
    }
    std::sort(paths.begin(), paths.end());
    std::vector<Input> corpus;
    for (auto const & path : paths)
    {
        std::ifstream file(path, std::ios::binary);
        corpus.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    return corpus;
}

/// A number below `limit`, which is not 0. Written out since the standard's distributions differ between libraries.
std::size_t Pick(Random & random, std::size_t limit)
{
    return static_cast<std::size_t>(random() % limit);
}

std::ptrdiff_t PickOffset(Random & random, Input const & input)
{
    return static_cast<std::ptrdiff_t>(Pick(random, input.size() + 1));
}

void FlipBit(Input & input, Random & random)
{
    if (!input.empty())
    {
        input[Pick(random, input.size())] ^= static_cast<std::uint8_t>(1U << Pick(random, 8));
    }
}

void SetByte(Input & input, Random & random)
{
    if (!input.empty())
    {
        input[Pick(random, input.size())] = static_cast<std::uint8_t>(random());
    }
}

/// Numbers at which lengths and counts tend to go wrong, in 1, 2, 4 or 8 little-endian bytes.
void SetNumber(Input & input, Random & random)
{
    constexpr std::array<std::uint64_t, 10> numbers{
        0, 1, 12, 0x7F, 0x80, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0x7FFFFFFFFFFFFFFF, 0xFFFFFFFFFFFFFFFF};
    std::uint64_t number = numbers[Pick(random, numbers.size())];
    std::size_t const size = std::size_t{1} << Pick(random, 4);
    for (std::size_t i = Pick(random, input.size() + 1), n = 0; n < size && i < input.size(); ++i, ++n)
    {
        input[i] = static_cast<std::uint8_t>(number);
        number >>= 8;
    }
}

void Insert(Input & input, Random & random)
{
    Input const bytes(1 + Pick(random, 16), static_cast<std::uint8_t>(random()));
    input.insert(input.begin() + PickOffset(random, input), bytes.begin(), bytes.end());
}

void Erase(Input & input, Random & random)
{
    std::ptrdiff_t const first = PickOffset(random, input);
    std::ptrdiff_t const last =
        std::min(first + 1 + static_cast<std::ptrdiff_t>(Pick(random, 16)), static_cast<std::ptrdiff_t>(input.size()));
    input.erase(input.begin() + first, input.begin() + std::max(first, last));
}

void Truncate(Input & input, Random & random)
{
    input.resize(Pick(random, input.size() + 1));
}

void Repeat(Input & input, Random & random)
{
    std::ptrdiff_t const first = PickOffset(random, input);
    std::ptrdiff_t const last =
        std::min(first + 1 + static_cast<std::ptrdiff_t>(Pick(random, 64)), static_cast<std::ptrdiff_t>(input.size()));
    Input const block(input.begin() + first, input.begin() + std::max(first, last));
    input.insert(input.begin() + PickOffset(random, input), block.begin(), block.end());
}

/// One of the corpus with a few changes, or its head joined to the tail of another.
Input Mutate(std::vector<Input> const & corpus, Random & random)
{
    constexpr std::array changes{FlipBit, SetByte, SetNumber, Insert, Erase, Truncate, Repeat};
    Input input = corpus[Pick(random, corpus.size())];
    if (Pick(random, 8) == 0)
    {
        Input const & other = corpus[Pick(random, corpus.size())];
        Truncate(input, random);
        input.insert(input.end(), other.begin() + PickOffset(random, other), other.end());
    }
    for (std::size_t i = 1 + Pick(random, 8); i > 0; --i)
    {
        changes[Pick(random, changes.size())](input, random);
    }
    return input;
}

void Run(Input const & input, std::string const & save)
{
    if (!save.empty())
    {
        std::ofstream file(save, std::ios::binary | std::ios::trunc);
        file.write(reinterpret_cast<char const *>(input.data()), static_cast<std::streamsize>(input.size()));
    }
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

} // namespace

int main(int count, char ** arguments)
{
    std::optional<Options> const options = ParseOptions(count, arguments);
    if (!options)
    {
        std::cerr << "usage: " << arguments[0] << " <corpus> [--runs N] [--seconds S] [--seed N] [--save FILE]\n";
        return 2;
    }
    std::vector<Input> const corpus = ReadCorpus(options->corpus);
    if (corpus.empty())
    {
        std::cerr << "no files in the corpus folder " << options->corpus << '\n';
        return 2;
    }
    // Told beforehand, since a fault ends the process.
    std::cout << corpus.size() << " files, up to " << options->runs << " mutations, seed " << options->seed
              << std::endl;
    Run({}, options->save);
    for (Input const & input : corpus)
    {
        Run(input, options->save);
    }
    auto const end = std::chrono::steady_clock::now() + std::chrono::seconds(options->seconds);
    Random random(options->seed);
    unsigned long long done = 0;
    while (done < options->runs && std::chrono::steady_clock::now() < end)
    {
        Run(Mutate(corpus, random), options->save);
        ++done;
    }
    std::cout << done << " mutations without a fault" << std::endl;
    return 0;
}
