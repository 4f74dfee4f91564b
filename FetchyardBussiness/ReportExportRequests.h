#pragma once

#include "FetchyardBussiness/DeterminantWriteFile/DeterminantDownloadParam.h"
#include "FetchyardBussiness/RequestReader.h"
#include "ZellTaskKit/DownloadTaskBase.h"

#include <memory>
#include <string>

namespace FetchyardBussiness::details {

// The purpose of an export that is registered as evidence.
inline constexpr int kEvidencePurpose = 1;

// Makes the task of a person picture request; null if none came of it.
std::shared_ptr<ZellTaskKit::CDownloadTaskBase> MakePersonPictureTask(int purpose,
                                                                      const RequestReader& request,
                                                                      ZellNetLink::CRapidJsonProto& document);

// Reads the three lists of files that belong to a report export, and makes their folders.
void ReadPictures(const RequestReader& data, VsFileParam& settings);
void ReadVideos(const RequestReader& data, VsFileParam& settings);
void ReadStoredObjects(const RequestReader& data, VsFileParam& settings);

// Folders in Qt's terms.
bool FolderExists(const std::string& folder);
bool MakeFolder(const std::string& folder);

// The name of an export whose request names none.
std::string GeneratedName();
// Makes a task's folder, and turns its backslashes. A failure is left for the task to meet.
void MakeTaskFolder(std::string& folder);
// What the task list shows of a new task.
void FillTaskFields(int purpose, const std::string& name, const std::string& folder,
                    ZellTaskKit::CDownloadTaskParam& record);

}  // namespace FetchyardBussiness::details
