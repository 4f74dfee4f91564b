#pragma once

#include "ZellOfficeKit/Export.h"

#include <string>

// Where ZellOfficeKit keeps what must not lie in an export folder: the temporary files of an open workbook,
// the workbook itself until it is whole, and files that did not reach the disk whole. For the program that
// hosts the libraries.
namespace ZellOfficeKit {

// Sets the folder, UTF-8; the empty text goes back to the default, a folder of this user in the system's
// temporary folder. It is made when it is first needed, readable by its owner only. Any thread; workbooks
// that are open keep the folder they were started with.
ZELLOFFICEKIT_API void SetWorkFolder(const std::string& folder);
// The folder in use, UTF-8, without a final separator. Any thread.
ZELLOFFICEKIT_API std::string WorkFolder();
// Where files are moved that did not reach the disk whole: a folder below the work folder. Nothing removes
// them but their owner.
ZELLOFFICEKIT_API std::string SetAsideFolder();

}  // namespace ZellOfficeKit
