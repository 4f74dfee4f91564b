#include "Transcoding.h"

#include "FetchyardLogicalHost/TranscodingRequest.h"
#include "ZellBase/FileSystem.h"

#include <QDir>
#include <QFileInfo>

namespace FetchyardClient {

namespace {

using nlohmann::json;

constexpr char kRequest[] = "TranscodingRequest";

// In the one form that the task's progress compares with.
std::string PathBelow(const std::string& folder, const std::string& path)
{
    const QDir base(QString::fromStdString(folder));
    return QDir::cleanPath(base.filePath(QString::fromStdString(path))).toStdString();
}

void MakeFolderOf(const std::string& file, const std::string& pointer, std::vector<Violation>& violations)
{
    const std::string folder = QFileInfo(QString::fromStdString(file)).path().toStdString() + "/";
    if (Zell::Base::FileSystem::MakeFullDir(folder.c_str()) != 0)
        violations.push_back({pointer, "the folder " + folder + " can't be made"});
}

}  // namespace

bool IsTranscoding(const json& request)
{
    return request.is_object() && request.contains(kRequest);
}

std::vector<ExpectedFile> PlanTranscoding(json& request, const std::string& save_folder,
                                          std::vector<Violation>& violations)
{
    const std::string pointer = "/" + std::string(kRequest) + "/Files";
    for (json& file : request[kRequest]["Files"]) {
        for (const char* member : {"SourceFile", "SaveFile"})
            file[member] = PathBelow(save_folder, file[member]);
    }
    std::vector<ExpectedFile> expected;
    FetchyardLogical::TranscodingRequest read;
    std::string reason;
    if (!FetchyardLogical::ReadTranscodingRequest(request.dump(), read, reason)) {
        violations.push_back({pointer, reason});
        return expected;
    }
    for (std::size_t i = 0; i < read.files.size(); ++i) {
        const FetchyardLogical::TrasncodingFile& file = read.files[i];
        MakeFolderOf(file.save_file, pointer + "/" + std::to_string(i) + "/SaveFile", violations);
        expected.push_back({file.save_file, true, "", ExpectedFile::Content::kVideo});
        const std::string picture = FetchyardLogical::PictureBeside(file.save_file);
        if (file.b_capture_image && !picture.empty())
            expected.push_back({picture, true, "", ExpectedFile::Content::kPicture});
    }
    return expected;
}

}  // namespace FetchyardClient
