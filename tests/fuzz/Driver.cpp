#include "FuzzTarget.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

// Runs a target over the files of a folder, each whole and cut in the middle. An empty folder is a failure.
namespace {

std::string Content(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void Run(const std::string& text, std::size_t size)
{
    // In a block of its own, so that a read behind the end is seen.
    const std::vector<std::uint8_t> bytes(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(size));
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "give the folder of a corpus\n");
        return 2;
    }
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        const std::string text = Content(entry.path());
        std::printf("%s\n", entry.path().filename().u8string().c_str());
        Run(text, text.size());
        Run(text, text.size() / 2);
        ++count;
    }
    if (count > 0)
        return 0;
    std::fprintf(stderr, "%s holds no input\n", argv[1]);
    return 1;
}
