#include "Tools.h"

#include <QProcess>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace SystemTest {
namespace {

constexpr int kLongest = 120000;  // milliseconds

}  // namespace

ToolResult RunTool(const QString& program, const QStringList& words, const QByteArray& input)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, words);
    if (!process.waitForStarted())
        throw std::runtime_error(program.toStdString() + " does not start");
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(kLongest);
    ToolResult result;
    result.output = process.readAll().toStdString();
    result.is_good = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    return result;
}

nlohmann::json Probe(const std::string& path, const char* kind)
{
    const ToolResult result =
        RunTool("ffprobe", {"-v", "error", "-count_frames", "-select_streams", kind, "-show_streams", "-of",
                            "json", QString::fromStdString(path)});
    if (!result.is_good)
        throw std::runtime_error("ffprobe: " + result.output);
    const nlohmann::json streams = nlohmann::json::parse(result.output)["streams"];
    return streams.empty() ? nlohmann::json() : streams[0];
}

std::string Complaints(const std::string& path)
{
    return RunTool("ffmpeg", {"-v", "warning", "-i", QString::fromStdString(path), "-f", "null", "-"}).output;
}

void MakeVideo(const std::string& path, const QStringList& words)
{
    const ToolResult result = RunTool(
        "ffmpeg", QStringList{"-v", "error", "-y"} + words + QStringList{QString::fromStdString(path)});
    if (!result.is_good)
        throw std::runtime_error("ffmpeg: " + result.output);
}

QImage FrameAt(const std::string& path, double second)
{
    const ToolResult picture =
        RunTool("ffmpeg", {"-v", "quiet", "-i", QString::fromStdString(path), "-ss", QString::number(second),
                           "-frames:v", "1", "-f", "image2pipe", "-c:v", "png", "-"});
    return QImage::fromData(QByteArray::fromStdString(picture.output), "PNG");
}

double Distance(const QImage& one, const QImage& other, const QRect& part)
{
    double sum = 0;
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x)
            sum += std::abs(qGray(one.pixel(x, y)) - qGray(other.pixel(x, y)));
    return sum / (part.width() * part.height());
}

std::string ReadBytes(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void WriteBytes(const std::string& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

std::vector<std::string> NamesIn(const std::string& folder)
{
    std::vector<std::string> names;
    std::error_code missing;
    for (const auto& entry : std::filesystem::directory_iterator(folder, missing))
        names.push_back(entry.path().filename().u8string());
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace SystemTest
