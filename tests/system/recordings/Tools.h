#pragma once

#include <nlohmann/json.hpp>
#include <QImage>
#include <QRect>
#include <QStringList>

#include <string>
#include <vector>

namespace SystemTest {

// Runs a program to its end; what it prints, on both streams, and whether it ended with 0.
struct ToolResult
{
    bool is_good = false;
    std::string output;
};
ToolResult RunTool(const QString& program, const QStringList& words, const QByteArray& input = {});

// What ffprobe says of the first stream of the kind ("v", "a") with each frame counted; null if there is
// none.
nlohmann::json Probe(const std::string& path, const char* kind = "v");
// What ffmpeg complains of when it decodes all of the file; empty if nothing.
std::string Complaints(const std::string& path);
// Makes a video with the ffmpeg command; the words stand between "ffmpeg" and the path.
void MakeVideo(const std::string& path, const QStringList& words);

// The picture that shows at that second, counted from the first one; null if there is none.
QImage FrameAt(const std::string& path, double second);
// How far the greys of two pictures are apart in a part of them, 0 to 255.
double Distance(const QImage& one, const QImage& other, const QRect& part);

std::string ReadBytes(const std::string& path);
void WriteBytes(const std::string& path, const std::string& bytes);
// Names in a folder, sorted; none if there is no such folder.
std::vector<std::string> NamesIn(const std::string& folder);

}  // namespace SystemTest
