#include "minihost/image/ImageFile.h"

#include <dlfcn.h>
#include <unistd.h>

#include <filesystem>
#include <new>

#include "minihost/image/ImageLibrary.h"

namespace minihost {
namespace {

struct Library {
    MinihostWriteImage write = nullptr;
    MinihostImageSize size = nullptr;
    MinihostReadImage read = nullptr;
    std::string problem;
};

/// The library lies beside the one that this is in.
const Library& Images() {
    static const Library library = [] {
        Library found;
        Dl_info self{};
        dladdr(reinterpret_cast<const void*>(&Images), &self);
        const auto path =
            std::filesystem::path(self.dli_fname ? self.dli_fname : "").parent_path() /
            "libminihost_image.so";
        void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (handle) {
            found.write =
                reinterpret_cast<MinihostWriteImage>(dlsym(handle, "minihost_write_image"));
            found.size = reinterpret_cast<MinihostImageSize>(dlsym(handle, "minihost_image_size"));
            found.read = reinterpret_cast<MinihostReadImage>(dlsym(handle, "minihost_read_image"));
        }
        if (!found.write || !found.size || !found.read) {
            const char* why = dlerror();
            found.problem = std::string("images can't be read or written: ") + (why ? why : "");
        }
        return found;
    }();
    return library;
}

std::string About(const std::string& path, const std::string& why) {
    return path + ": " + why;
}

}  // namespace

std::string WritePicture(const std::string& path, const Picture& picture) {
    const Library& images = Images();
    if (!images.problem.empty()) return images.problem;
    const std::filesystem::path to(path);
    if (!to.has_extension()) return About(path, "the name needs an ending, such as .png");
    // The ending stays, since it says the format.
    std::filesystem::path beside = to;
    beside.replace_filename("." + to.stem().string() + "-" + std::to_string(getpid()) +
                            to.extension().string());
    std::error_code failed;
    if (const char* why = images.write(beside.c_str(), picture.width, picture.height,
                                       picture.channels, picture.pixels.data())) {
        std::filesystem::remove(beside, failed);
        return About(path, why);
    }
    std::filesystem::rename(beside, to, failed);
    if (!failed) return {};
    const std::string why = failed.message();
    std::filesystem::remove(beside, failed);
    return About(path, why);
}

std::string ReadPicture(const std::string& path, int channels, Picture& picture) {
    const Library& images = Images();
    if (!images.problem.empty()) return images.problem;
    int width = 0, height = 0;
    if (const char* why = images.size(path.c_str(), &width, &height)) return About(path, why);
    if (width < 1 || height < 1 || width > kMaxImageSize || height > kMaxImageSize)
        return About(path, "no image is larger than 32768 x 32768, or empty");
    Picture read{width, height, channels, {}};
    try {
        read.pixels.resize(read.RowBytes() * static_cast<size_t>(height));
    } catch (const std::bad_alloc&) {
        return About(path, "too little memory");
    }
    if (const char* why = images.read(path.c_str(), width, height, channels, read.pixels.data()))
        return About(path, why);
    picture = std::move(read);
    return {};
}

}  // namespace minihost
