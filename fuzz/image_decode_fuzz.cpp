// Feeds arbitrary bytes as an image resource of a bundle and loads it the way a control does:
// the load either gives the decoder's code and leaves the image unloaded, or gives pixels of the
// size the header promised, which a second holder shares without decoding again.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "Code/GUI/WCBaseImage.h"
#include "Code/GUI/WUImageDecoder.h"
#include "resources/ResourceManager.h"

using namespace MIREL_NAMESPACE_NAME;

namespace {

// One bundle for the whole run, in a folder of its own under the temporary folder, closed and
// removed when the run ends.
struct WSFuzzBundle {
    std::filesystem::path m_Folder;
    WTResContainerType *m_Container = nullptr;

    WSFuzzBundle() {
        std::string folder =
            (std::filesystem::temp_directory_path() / "image_fuzz_XXXXXX").string();
        if (mkdtemp(folder.data()) == nullptr)
            std::abort();
        m_Folder = folder;
        const auto bundle = m_Folder / "Fuzz.bundle";
        std::filesystem::create_directories(bundle / "Contents" / "Resources");
        if (RM::OpenResContainer(bundle.c_str(), 0, m_Container) != eNoErr)
            std::abort();
    }
    ~WSFuzzBundle() {
        RM::CloseResContainer(m_Container);
        std::error_code ignored;
        std::filesystem::remove_all(m_Folder, ignored);
    }
};

WTResContainerType *Bundle() {
    static WSFuzzBundle bundle;
    return bundle.m_Container;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    WTResContainerType *container = Bundle();
    // Stored as a PNG whatever the bytes are: the decoder goes by what they hold, so WebP bytes
    // take the WebP path from here too.
    WTResourceType *raw = nullptr;
    if (RM::AddOrReplaceResource(container, WCResKey("PNG_", short(1)), data, size, raw) != eNoErr)
        return 0;
    {
        WCBaseImage first(1), second(1);
        const int err = first.LoadFromResource(container);
        if (err != eNoErr) {
            if (first.IsLoaded() || (err != eGMInvalidImage && err != eGMUnsupportedImageFormat &&
                                     err != eMemNewFailed))
                std::abort();
        } else {
            const WSDecodedImage *pixels = first.GetPixels();
            if (pixels == nullptr || pixels->m_Width <= 0 || pixels->m_Height <= 0 ||
                pixels->m_Pixels.size() !=
                    static_cast<std::size_t>(pixels->m_Width) * pixels->m_Height * 4)
                std::abort();
            const std::uint64_t decodes = ImageDecoder::GetNumDecodes();
            if (second.LoadFromResource(container) != eNoErr || second.GetPixels() != pixels ||
                ImageDecoder::GetNumDecodes() != decodes)
                std::abort();
            first.IsPixelTransparent({static_cast<short>(pixels->m_Width - 1), 0});
        }
    }
    RM::ReleaseResource(raw);
    return 0;
}
