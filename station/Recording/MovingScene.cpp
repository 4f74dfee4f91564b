#include "station/Recording/MovingScene.h"

#include "station/Clock.h"
#include "station/Drawing/Figures.h"
#include "station/Drawing/Lettering.h"
#include "station/Random.h"

#include <MultimediaCommHost/AvPointers.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>

namespace Station {
namespace {

constexpr int kBlock = kVideoWidth / 32;  // width of a block of the code
constexpr int kCodeLines = 16;
constexpr int kFrameBits = 5;
constexpr std::uint8_t kWhite = 235;
constexpr std::uint8_t kBlack = 16;
constexpr std::uint8_t kGrey = 128;  // of the colours: none
constexpr int kClockLeft = 8;
constexpr int kClockTop = 40;
constexpr std::string_view kClockLetters = "0123456789-:. ";

int Even(int number)
{
    return number & ~1;
}

std::uint8_t Brightness(QRgb c)
{
    return static_cast<std::uint8_t>((66 * qRed(c) + 129 * qGreen(c) + 25 * qBlue(c) + 128) / 256 + 16);
}

std::uint8_t BlueDifference(int red, int green, int blue)
{
    return static_cast<std::uint8_t>((-38 * red - 74 * green + 112 * blue + 128) / 256 + 128);
}

std::uint8_t RedDifference(int red, int green, int blue)
{
    return static_cast<std::uint8_t>((112 * red - 94 * green - 18 * blue + 128) / 256 + 128);
}

// The two colours of four pixels, each as far as it covers.
void TakeColours(const QImage& image, int x, int y, Sprite& sprite)
{
    int red = 0;
    int green = 0;
    int blue = 0;
    int cover = 0;
    for (const QPoint& at : {QPoint(x, y), QPoint(x + 1, y), QPoint(x, y + 1), QPoint(x + 1, y + 1)}) {
        const QRgb c = image.pixel(at);
        red += qRed(c) * qAlpha(c);
        green += qGreen(c) * qAlpha(c);
        blue += qBlue(c) * qAlpha(c);
        cover += qAlpha(c);
    }
    cover = std::max(cover, 1);
    sprite.u.push_back(BlueDifference(red / cover, green / cover, blue / cover));
    sprite.v.push_back(RedDifference(red / cover, green / cover, blue / cover));
}

Sprite ToSprite(const QImage& source)
{
    const QImage image = source.convertToFormat(QImage::Format_ARGB32);
    Sprite sprite;
    sprite.width = Even(image.width());
    sprite.height = Even(image.height());
    for (int y = 0; y < sprite.height; ++y)
        for (int x = 0; x < sprite.width; ++x) {
            const QRgb c = image.pixel(x, y);
            sprite.y.push_back(Brightness(c));
            sprite.alpha.push_back(static_cast<std::uint8_t>(qAlpha(c)));
            if (x % 2 == 0 && y % 2 == 0)
                TakeColours(image, x, y, sprite);
        }
    return sprite;
}

std::uint8_t* LineOf(AVFrame& frame, int plane, int y)
{
    return frame.data[plane] + std::ptrdiff_t{y} * frame.linesize[plane];
}

std::uint8_t Mix(std::uint8_t below, std::uint8_t above, int cover)
{
    return static_cast<std::uint8_t>(below + (above - below) * cover / 255);
}

// left and top are even.
void PutBrightness(AVFrame& frame, const Sprite& sprite, int left, int top)
{
    const int count = std::min(sprite.width, kVideoWidth - left);
    for (int y = 0; y < std::min(sprite.height, kVideoHeight - top); ++y) {
        std::uint8_t* line = LineOf(frame, 0, top + y) + left;
        const auto row = static_cast<std::size_t>(y) * static_cast<std::size_t>(sprite.width);
        for (int x = 0; x < count; ++x)
            line[x] = Mix(line[x], sprite.y[row + static_cast<std::size_t>(x)],
                          sprite.alpha[row + static_cast<std::size_t>(x)]);
    }
}

void PutColours(AVFrame& frame, const Sprite& sprite, int left, int top)
{
    const int count = std::min(sprite.width, kVideoWidth - left) / 2;
    const auto width = static_cast<std::size_t>(sprite.width);
    for (int y = 0; y < std::min(sprite.height, kVideoHeight - top) / 2; ++y) {
        std::uint8_t* u = LineOf(frame, 1, top / 2 + y) + left / 2;
        std::uint8_t* v = LineOf(frame, 2, top / 2 + y) + left / 2;
        const std::size_t row = static_cast<std::size_t>(y) * (width / 2);
        for (int x = 0; x < count; ++x) {
            const std::size_t at = static_cast<std::size_t>(x);
            const std::size_t above = static_cast<std::size_t>(y) * 2 * width + at * 2;
            const int cover = (sprite.alpha[above] + sprite.alpha[above + 1] + sprite.alpha[above + width] +
                               sprite.alpha[above + width + 1]) /
                              4;
            u[x] = Mix(u[x], sprite.u[row + at], cover);
            v[x] = Mix(v[x], sprite.v[row + at], cover);
        }
    }
}

void Put(AVFrame& frame, const Sprite& sprite, int left, int top)
{
    PutBrightness(frame, sprite, left, top);
    PutColours(frame, sprite, left, top);
}

void PutGround(AVFrame& frame, const Sprite& ground)
{
    const std::array<const std::vector<std::uint8_t>*, 3> planes = {&ground.y, &ground.u, &ground.v};
    for (std::size_t i = 0; i < planes.size(); ++i) {
        const int half = i == 0 ? 1 : 2;
        const auto width = static_cast<std::size_t>(kVideoWidth / half);
        for (int y = 0; y < kVideoHeight / half; ++y)
            std::memcpy(LineOf(frame, static_cast<int>(i), y),
                        planes[i]->data() + static_cast<std::size_t>(y) * width, width);
    }
}

void PutBlock(AVFrame& frame, int column, int top, bool is_set)
{
    const std::ptrdiff_t left = std::ptrdiff_t{column} * kBlock;
    for (int y = top; y < top + kCodeLines; ++y)
        std::memset(LineOf(frame, 0, y) + left, is_set ? kWhite : kBlack, kBlock);
    for (const int plane : {1, 2})
        for (int y = top / 2; y < (top + kCodeLines) / 2; ++y)
            std::memset(LineOf(frame, plane, y) + left / 2, kGrey, kBlock / 2);
}

void PutCode(AVFrame& frame, std::int64_t second, int number)
{
    for (int i = 0; i < 32; ++i)
        PutBlock(frame, i, 0, (second >> (31 - i) & 1) != 0);
    for (int i = 0; i < kFrameBits; ++i)
        PutBlock(frame, i, kCodeLines, (number >> (kFrameBits - 1 - i) & 1) != 0);
}

// Between 0 and range, there and back again.
int ToAndFro(std::int64_t way, int range)
{
    if (range <= 0)
        return 0;
    const int at = static_cast<int>(way % (2 * std::int64_t{range}));
    return at <= range ? at : 2 * range - at;
}

QImage HalfSize(const QImage& image)
{
    return image.scaled(image.width() / 2, image.height() / 2, Qt::IgnoreAspectRatio,
                        Qt::SmoothTransformation);
}

Sprite LetterSprite(const Lettering& letters, char letter)
{
    const std::string text(1, letter);
    QImage image(letters.Width(text), letters.Height(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    letters.Draw(painter, 0, 0, text);
    painter.end();
    return ToSprite(image);
}

}  // namespace

MovingScene::MovingScene(const Scene& scene, std::uint64_t seed, Light light)
{
    ground_ = ToSprite(HalfSize(DrawScene(scene, seed, light)));
    const auto draw = [&](double depth, bool is_car, int step, int delay) {
        QImage image(kPictureWidth, kPictureHeight, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        const double ground = scene.horizon + (kPictureHeight - scene.horizon) * depth;
        const double height = scene.near_height * (0.2 + 0.8 * depth);
        const QPointF foot(kPictureWidth / 2.0, ground);
        const QRectF box = is_car ? DrawCar(painter, foot, height * 0.82, seed, light, "")
                                  : DrawPerson(painter, foot, height, seed + 1, light);
        painter.end();
        AddWalker(image, box, step, delay);
    };
    draw(0.45, scene.is_outdoors, 4, 40);
    draw(0.75, false, 2, 0);
    for (const char letter : kClockLetters)
        letters_[letter] = LetterSprite(Lettering::Instance(), letter);
}

void MovingScene::AddWalker(const QImage& image, const QRectF& box, int step, int delay)
{
    const QRect whole = box.toAlignedRect().adjusted(-4, -4, 4, 4).intersected(image.rect());
    Walker walker;
    walker.sprite = ToSprite(HalfSize(image.copy(whole)));
    walker.left = 16;
    walker.right = kVideoWidth - 16 - walker.sprite.width;
    walker.top = Even(whole.top() / 2);
    walker.step = step;
    walker.delay = delay;
    walkers_.push_back(walker);
}

void MovingScene::Paint(AVFrame& frame, std::int64_t second, int number) const
{
    PutGround(frame, ground_);
    const std::int64_t age = second * kVideoRate + number;
    for (const Walker& walker : walkers_)
        Put(frame, walker.sprite,
            Even(walker.left + ToAndFro((age + walker.delay) * walker.step, walker.right - walker.left)),
            walker.top);
    PutCode(frame, second, number);
    DrawClock(frame, second, number);
}

void MovingScene::DrawClock(AVFrame& frame, std::int64_t second, int number) const
{
    char count[16];
    std::snprintf(count, sizeof(count), " %02d", number);
    int left = kClockLeft;
    for (const char letter : FormatTime(second) + count) {
        const Sprite& sprite = letters_.at(letter);
        Put(frame, sprite, left, kClockTop);
        left += Even(sprite.width - 4);
    }
}

}  // namespace Station
