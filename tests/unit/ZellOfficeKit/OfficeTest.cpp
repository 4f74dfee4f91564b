#include "OfficeTest.h"

#include "ZellBaseHost/LogHost.h"
#include "ZellOfficeKitHost/OfficeFolders.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

OfficeTest::OfficeTest()
{
    ZellOfficeKit::SetWorkFolder(work_.Text());
    ZellOfficeKit::SetOfficeLimits({});
    Zell::Base::details::SetLogListener(
        [this](int level, const std::string& /*module*/, const std::string& text) {
            const std::lock_guard lock(mutex_);
            if (level == 5)
                errors_.push_back(text);
        });
}

OfficeTest::~OfficeTest()
{
    Zell::Base::details::FlushLog();
    Zell::Base::details::SetLogListener({});
    ZellOfficeKit::SetOfficeLimits({});
    ZellOfficeKit::SetWorkFolder("");
}

std::vector<std::string> OfficeTest::Errors()
{
    Zell::Base::details::FlushLog();
    const std::lock_guard lock(mutex_);
    return errors_;
}

std::vector<std::string> OfficeTest::NamesIn(const std::string& folder)
{
    std::vector<std::string> names;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(fs::u8path(folder), error))
        names.push_back(entry.path().filename().u8string());
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> OfficeTest::NamesInWork() const
{
    std::vector<std::string> names = NamesIn(work_.Text());
    names.erase(std::remove(names.begin(), names.end(), "set-aside"), names.end());
    return names;
}

std::vector<std::string> OfficeTest::NamesSetAside() const
{
    return NamesIn(work_.File("set-aside"));
}

std::string Output(const std::string& command)
{
    std::string output;
    std::FILE* pipe = popen(command.c_str(), "r");
    char buffer[65536];
    for (std::size_t size = 0; (size = fread(buffer, 1, sizeof(buffer), pipe)) > 0;)
        output.append(buffer, size);
    EXPECT_EQ(pclose(pipe), 0) << command;
    return output;
}

std::string QuotedForShell(const std::string& text)
{
    std::string quoted = "'";
    for (const char letter : text)
        quoted += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
    return quoted + "'";
}

std::string Member(const std::string& path, const std::string& name)
{
    return Output("unzip -p " + QuotedForShell(path) + " " + QuotedForShell(name));
}

std::unique_ptr<pugi::xml_document> Xml(const std::string& path, const std::string& name)
{
    auto document = std::make_unique<pugi::xml_document>();
    const std::string text = Member(path, name);
    const auto result =
        document->load_buffer(text.data(), text.size(), pugi::parse_default | pugi::parse_ws_pcdata);
    EXPECT_TRUE(result) << name << ": " << result.description();
    return document;
}

Cells CellsOf(const std::string& path, int sheet)
{
    Cells cells;
    const auto document = Xml(path, "xl/worksheets/sheet" + std::to_string(sheet) + ".xml");
    for (const auto& found : document->select_nodes("//c[is]"))
        cells[found.node().attribute("r").value()] = found.node().child("is").child("t").text().get();
    return cells;
}

std::vector<std::string> Attributes(const std::string& path, const std::string& member,
                                    const std::string& element, const std::string& attribute)
{
    std::vector<std::string> values;
    const auto document = Xml(path, member);
    for (const auto& found : document->select_nodes(("//" + element).c_str()))
        values.emplace_back(found.node().attribute(attribute.c_str()).value());
    return values;
}

std::vector<std::string> SheetNamesOf(const std::string& path)
{
    return Attributes(path, "xl/workbook.xml", "sheet", "name");
}

std::string AskOpenpyxl(const std::string& path, const std::string& program)
{
    const std::string whole =
        "import openpyxl\nbook = openpyxl.load_workbook('" + path + "')\n" + program + "\n";
    std::string output = Output("/usr/bin/python3 -c " + QuotedForShell(whole));
    if (!output.empty() && output.back() == '\n')
        output.pop_back();
    return output;
}

std::string PngBytes(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, "png"));
    return bytes.toStdString();
}

std::string ReadWhole(const std::string& path)
{
    std::ifstream file(fs::u8path(path), std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}
