#include "Drawing/TextRenderer.h"

#include "Drawing/AssText.h"
#include "Video/VideoFailure.h"

#include <ass/ass.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace Zell::MultimediaComm {
namespace {

struct AssDeleter
{
    void operator()(ASS_Library* library) const { ass_library_done(library); }
    void operator()(ASS_Renderer* renderer) const { ass_renderer_done(renderer); }
    void operator()(ASS_Track* track) const { ass_free_track(track); }
};
using Library = std::unique_ptr<ASS_Library, AssDeleter>;
using Renderer = std::unique_ptr<ASS_Renderer, AssDeleter>;
using Track = std::unique_ptr<ASS_Track, AssDeleter>;

constexpr std::size_t kMostLettersNoted = 50;

// The library tells of a letter that no font has in words only.
void HearMessage(int /*level*/, const char* format, va_list arguments, void* data)
{
    std::array<char, 512> text = {};
    std::vsnprintf(text.data(), text.size(), format, arguments);
    const std::string words = text.data();
    const std::size_t number = words.find("failed to find any fallback with glyph 0x");
    if (number == std::string::npos)
        return;
    const unsigned long letter = std::strtoul(words.c_str() + words.find("0x", number), nullptr, 16);
    std::array<char, 16> name = {};
    std::snprintf(name.data(), name.size(), "U+%04lX", letter);
    auto& missing = *static_cast<std::set<std::string>*>(data);
    if (missing.size() < kMostLettersNoted)
        missing.insert(name.data());
}

}  // namespace

struct TextRenderer::Impl
{
    int width = 0;
    int height = 0;
    std::set<std::string> missing;
    Library library;
    Renderer renderer;

    Track MakeTrack(const std::vector<TextItem>& items, int of_width, int of_height) const
    {
        std::string script = AssScript(items, of_width, of_height);
        Track track(CheckMemory(ass_read_memory(library.get(), script.data(), script.size(), nullptr)));
        ass_set_frame_size(renderer.get(), of_width, of_height);
        return track;
    }

    // The pictures belong to the renderer and last until the next call.
    const ASS_Image* Render(const Track& track) const
    {
        return ass_render_frame(renderer.get(), track.get(), 0, nullptr);
    }
};

TextRenderer::TextRenderer(int width, int height) : impl_(std::make_unique<Impl>())
{
    impl_->width = width;
    impl_->height = height;
    impl_->library.reset(CheckMemory(ass_library_init()));
    ass_set_message_cb(impl_->library.get(), &HearMessage, &impl_->missing);
    impl_->renderer.reset(CheckMemory(ass_renderer_init(impl_->library.get())));
    ass_set_fonts(impl_->renderer.get(), nullptr, "sans-serif", ASS_FONTPROVIDER_AUTODETECT, nullptr, 1);
    ass_set_shaper(impl_->renderer.get(), ASS_SHAPING_COMPLEX);
}

TextRenderer::~TextRenderer() = default;

Canvas TextRenderer::Draw(const std::vector<TextItem>& items)
{
    Canvas canvas(impl_->width, impl_->height);
    const Track track = impl_->MakeTrack(items, impl_->width, impl_->height);
    for (const ASS_Image* image = impl_->Render(track); image != nullptr; image = image->next) {
        const Colour colour = {static_cast<int>(image->color >> 24),
                               static_cast<int>((image->color >> 16) & 255),
                               static_cast<int>((image->color >> 8) & 255)};
        const int opacity = 255 - static_cast<int>(image->color & 255);
        canvas.Lay(image->bitmap, image->stride, image->w, image->h, image->dst_x, image->dst_y, colour,
                   opacity);
    }
    return canvas;
}

double TextRenderer::WidthOf(const std::string& text, double line_height)
{
    // Wide enough for any text of sense; what is longer fills the sheet anyway.
    constexpr int kWidest = 16384;
    TextItem item;
    item.text = text;
    item.line_height = line_height;
    const int lines = static_cast<int>(std::count(text.begin(), text.end(), '\n')) + 1;
    const int height = static_cast<int>(std::ceil(line_height * (lines + 1)));
    const Track track = impl_->MakeTrack({item}, kWidest, height);
    int right = 0;
    for (const ASS_Image* image = impl_->Render(track); image != nullptr; image = image->next)
        right = std::max(right, image->dst_x + image->w);
    return right;
}

bool TextRenderer::HasFont()
{
    return WidthOf("A", 40) > 0;
}

const std::set<std::string>& TextRenderer::MissingLetters() const
{
    return impl_->missing;
}

}  // namespace Zell::MultimediaComm
