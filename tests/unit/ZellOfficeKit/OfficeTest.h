#pragma once

#include "tests/unit/TempFolder.h"
#include "ZellOfficeKit/ExcelControllor.h"
#include "ZellOfficeKitHost/OfficeLimits.h"

#include <gmock/gmock.h>
#include <pugixml.hpp>

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

// A folder for reports, a work folder, the format's own limits, and an ear at the log.
class OfficeTest : public ::testing::Test
{
protected:
    OfficeTest();
    ~OfficeTest() override;

    // The lines of level 5 so far.
    std::vector<std::string> Errors();
    std::string Report(const std::string& name) const { return reports_.File(name); }
    // Names in a folder, sorted.
    static std::vector<std::string> NamesIn(const std::string& folder);
    std::vector<std::string> NamesInReports() const { return NamesIn(reports_.Text()); }
    // What lies in the work folder beside the folder of files set aside.
    std::vector<std::string> NamesInWork() const;
    std::vector<std::string> NamesSetAside() const;
    void Lower(const ZellOfficeKit::OfficeLimits& limits) { ZellOfficeKit::SetOfficeLimits(limits); }

    TempFolder reports_;
    TempFolder work_;

private:
    std::mutex mutex_;
    std::vector<std::string> errors_;
};

// A workbook under work, with short calls.
class Book
{
public:
    explicit Book(const std::string& path) : path_(path) { EXPECT_TRUE(excel_.Init(path, "")); }

    ZellOfficeKit::CExcelControllorWithC* operator->() { return &excel_; }
    void Text(int row, int col, const std::string& text) { excel_.SetCellString(row, col, text, nullptr); }
    void Link(int row, int col, std::string target, std::string text)
    {
        excel_.SetLinkString(row, col, target, text);
    }
    const std::string& path() const { return path_; }

private:
    std::string path_;
    ZellOfficeKit::CExcelControllorWithC excel_{nullptr};
};

using Cells = std::map<std::string, std::string>;

// The output of a command; the test fails if it ends with another code than 0.
std::string Output(const std::string& command);
std::string QuotedForShell(const std::string& text);
// A member of a zip, unpacked by unzip.
std::string Member(const std::string& path, const std::string& name);
// A workbook's member as XML; the test fails if it is none.
std::unique_ptr<pugi::xml_document> Xml(const std::string& path, const std::string& name);
// Texts of the cells that have one, as they stand in the sheet of that number.
Cells CellsOf(const std::string& path, int sheet = 1);
// One attribute of all elements of that name in the sheet, in order; empty where it is absent.
std::vector<std::string> Attributes(const std::string& path, const std::string& member,
                                    const std::string& element, const std::string& attribute);
// Names of the sheets in order.
std::vector<std::string> SheetNamesOf(const std::string& path);
// What a program of openpyxl prints; "book" is the workbook there.
std::string AskOpenpyxl(const std::string& path, const std::string& program);
std::string PngBytes(int width, int height);
std::string ReadWhole(const std::string& path);
