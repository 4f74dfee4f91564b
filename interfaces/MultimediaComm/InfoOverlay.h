#pragma once

#include "MultimediaComm/Export.h"
#include "MultimediaComm/WaterMarkParam.h"

#include <array>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace Zell::MultimediaComm {

// -1 means no overlay; any other value that the video is to be stamped with the lines and the watermark.
using InfoOverlayType = int;
// Kind of the line list. 1: the lines that show form one block, each below the one before, with a font of its
// own; the position of the first of them is that of the whole block. Any other value: each line stands at its
// own position.
using InfoOverLineArrayType = int;

// How StartCovert ended. Whatever is not 0 leaves no file under the target's name.
enum InfoOverlayErr : int {
    InfoOverlayDone = 0,
    InfoOverlayStopped = 1,           // by StopCovert
    InfoOverlayBusy = 2,              // this object stamps already, on another thread
    InfoOverlaySourceUnreadable = 3,  // no such file, no rights, or no video file at all
    InfoOverlayNoVideo = 4,           // no video stream, or not one picture of it can be decoded
    InfoOverlayTargetUnwritable = 5,  // no folder, no rights, disk full, or source and target are the same
    InfoOverlayTextUndrawable = 6,    // there is text to burn in, but no font of this machine has any of it
    InfoOverlayFailed = 7,            // anything else: no encoder, no memory; the log has the reason
};

// One line of text to burn into a video. A plain value; all numbers are 0 and the text empty at first.
//
// FontSize         height of the line in pixels of the picture, gap between lines included; 0 or less: a
//                  twentieth of the picture's height
// ColorRGB         0 to 255 each, cut to that range; -1 (a member left out of a request) is 255
// TransparencyNum  0 opaque to 100 invisible; cut to that range
// ContentStr       UTF-8; a line feed begins a new line. Any script, in the direction that it asks for
// PosXType, PosX   0: pixels from the left edge of the picture to the left edge of the text
//                  1: pixels from the right edge to the right edge of the text
//                  2: pixels by which the text is right of the middle, may be negative
//                  10, 11, 12: the same three in ten-thousandths of the picture's width
//                  any other type counts as 0; a negative position counts as 0, except with 2 and 12
// PosYType, PosY   the same from the top, from the bottom, and below the middle, by the picture's height
// BeginMilliSecond, EndMilliSecond
//                  the line shows while begin <= t < end, t counted from the first picture of the video; a
//                  begin of 0 or less is the start, an end of 0 or less the end of the video
//
// A text too wide for the room beside its position is drawn smaller, down to 4 pixels. Text has a thin rim,
// dark around a light colour and light around a dark one. A letter that no font has shows as a box, and is
// logged.
//
// A picture that a player turns (rotation in the file) counts as turned: left is what a viewer sees as left.
class MULTIMEDIACOMM_API InfoOverlayLineArray
{
public:
    InfoOverlayLineArray();
    InfoOverlayLineArray(const InfoOverlayLineArray&);
    InfoOverlayLineArray(InfoOverlayLineArray&&) noexcept;
    InfoOverlayLineArray& operator=(const InfoOverlayLineArray&);
    InfoOverlayLineArray& operator=(InfoOverlayLineArray&&) noexcept;
    virtual ~InfoOverlayLineArray();

    void SetFontSize(const int& size);
    int GetFontSize() const;
    void SetColorRGB(const std::array<int, 3>& color);  // red, green, blue, 0 to 255 each
    std::array<int, 3> GetColorRGB() const;
    void SetTransparencyNum(const int& transparency);
    int GetTransparencyNum() const;
    void SetContentStr(const std::string& text);
    std::string GetContentStr() const;
    void SetPosXType(const int& type);
    int GetPosXType() const;
    void SetPosX(const int& position);
    int GetPosX() const;
    void SetPosYType(const int& type);
    int GetPosYType() const;
    void SetPosY(const int& position);
    int GetPosY() const;
    void SetBeginMilliSecond(const int& milliseconds);
    int GetBeginMilliSecond() const;
    void SetEndMilliSecond(const int& milliseconds);
    int GetEndMilliSecond() const;

private:
    int font_size_ = 0;
    std::array<int, 3> color_rgb_ = {0, 0, 0};
    int transparency_ = 0;
    std::string content_;
    int pos_x_type_ = 0;
    int pos_x_ = 0;
    int pos_y_type_ = 0;
    int pos_y_ = 0;
    int begin_millisecond_ = 0;
    int end_millisecond_ = 0;
};

// What to burn into one video, and the one who does it. The type is -1 at first. One file at a time;
// StopCovert, IsHandleAvailable and the getters of the type come from any thread, all else from the thread
// that stamps.
class MULTIMEDIACOMM_API InfoOverlay
{
public:
    InfoOverlay();
    InfoOverlay(const InfoOverlay&) = delete;
    InfoOverlay& operator=(const InfoOverlay&) = delete;
    virtual ~InfoOverlay();

    void SetInfoOverlayType(const InfoOverlayType& type);
    InfoOverlayType GetInfoOverlayType() const;
    void SetInfoOverlayLineArrayType(const InfoOverLineArrayType& type);
    InfoOverLineArrayType GetInfoOverlayLineArrayType() const;
    void SetInfoOverlayLineArrayVec(const std::vector<InfoOverlayLineArray>& lines);
    std::vector<InfoOverlayLineArray> GetInfoOverlayLineArrayVec() const;
    // The watermark that goes over the whole picture; without a call there is none.
    void SetWaterMarkParam(const CWaterMarkParam& watermark);
    // The file to stamp, and the file to write; UTF-8. The target is mp4 or avi by its extension, of the
    // source's own form without one. An existing target is replaced.
    void SetSrcFilePathStr(const std::string& path);
    void SetDstFilePathStr(const std::string& path);

    // Whether this machine can stamp: its libraries have an H.264 encoder and can draw text.
    bool IsHandleAvailable() const;
    // Stamps the source into the target (with nothing to draw: copies its streams), and returns when that is
    // done, has failed or was stopped. The target is H.264 with the source's pictures, one for one: size,
    // times, length, colours and rotation are kept, audio is copied (encoded as AAC only where the target's
    // form can't hold it). It appears whole or not at all. The last error of the thread is set on failure. A
    // source that was given to ProtectStamped yields a protected target.
    InfoOverlayErr StartCovert();
    // Makes a running StartCovert return within a picture; harmless, and lost, if none runs. Does not wait
    // for it.
    void StopCovert();

private:
    struct Run;

    InfoOverlayType type_ = -1;
    InfoOverLineArrayType line_array_type_ = -1;
    std::vector<InfoOverlayLineArray> lines_;
    CWaterMarkParam watermark_;
    std::string source_;
    std::string target_;
    std::mutex run_mutex_;
    std::shared_ptr<Run> run_;  // of the StartCovert in progress
};

}  // namespace Zell::MultimediaComm
