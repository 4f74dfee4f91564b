#pragma once

#include <set>
#include <string>

class QString;

namespace ZellOfficeKit {

// Gives out names of worksheets that the format accepts, each one once in a workbook: at most 31 UTF-16
// units, none of [ ] : * ? / \ and no control character, no apostrophe at either end, not "History", unique
// regardless of case.
class CSheetNames
{
public:
    // The wanted name if it is valid and free, else the nearest one that is.
    std::string Take(const std::string& wanted);
    // A name for the sheet that goes on where the sheet of that name is full: "Alarms (2)" for number 2.
    std::string TakeContinuation(const std::string& name, int number);

private:
    bool Occupy(const QString& name);
    std::string TakeNumbered(const QString& stem, int number);

    std::set<std::string> taken_;
};

}  // namespace ZellOfficeKit
