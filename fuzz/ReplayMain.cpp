// Stands in for libFuzzer: puts every file of the folders and files given to the target, one after the other.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace {

bool replay(const std::filesystem::path &file) {
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    if (!stream) {
        std::fprintf(stderr, "cannot read %s\n", file.c_str());
        return false;
    }
    // A block of exactly that size, so that the address sanitizer sees a read past its end.
    const std::vector<std::uint8_t> exact(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
    return true;
}

} // namespace

int main(int argumentCount, char **arguments) {
    int files = 0;
    for (int i = 1; i < argumentCount; ++i) {
        const std::filesystem::path path(arguments[i]);
        if (!std::filesystem::is_directory(path)) {
            if (!replay(path))
                return 1;
            ++files;
            continue;
        }
        for (const auto &entry : std::filesystem::directory_iterator(path)) {
            if (!replay(entry.path()))
                return 1;
            ++files;
        }
    }
    std::printf("%d inputs\n", files);
    return files > 0 ? 0 : 1;
}
