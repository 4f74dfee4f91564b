#include "Report/PageParser.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

using FetchyardLogical::ExportCell;
using FetchyardLogical::ExportSheet;
using FetchyardLogical::details::ParseReportPage;
using FetchyardLogical::details::ReportPage;
using Zell::Base::Error::ErrorCode;

namespace {

std::pair<int, int> Parse(std::string text, ReportPage& page)
{
    const ErrorCode error = ParseReportPage(text, 7, page);
    return {error.iFirstCode, error.iSecondCode};
}

std::pair<int, int> Parse(std::string text)
{
    ReportPage page;
    return Parse(std::move(text), page);
}

constexpr std::pair<int, int> kGood{0, 0};
constexpr std::pair<int, int> kNotUnderstood{23, 1};

// An answer with one sheet that has the given members behind its number.
std::string Sheet(const std::string& members)
{
    return R"({"TotalPageIsFinished":true,"Sheets":[{"PageIndex":1)" + members + "}]}";
}

constexpr char kWholePage[] = R"({"ErrorModule":0,"ErrorCode":0,"IsRowColumnData":true,
    "TotalPageIsFinished":false,"Sheets":[{"SheetName":"Alarms","PageIndex":3,
    "Formats":[{"FontFamily":"Arial","FontSize":11,"IsBold":true,"TextLocation":1,
      "BackgroundColor":"#DDEBF7","TextColor":"#000000","IsNeedWrap":true,"CellType":4,
      "ColumnWidth":20,"ValidList":"a,b"},{"CellType":2}],
    "Titles":[{"Text":"Events","Format":0}],"Columns":["Time",{"Text":"Picture","Format":1}],
    "Merges":[{"FirstRow":0,"FirstColumn":1,"LastRow":2,"LastColumn":5,"Text":"merged","Format":0}],
    "Rows":[["12:00",{"Text":"/pictures/1.jpg","Format":1,"Title":"door","Site":9}],[]]}]})";

}  // namespace

TEST(PageParser, ReadsEveryMemberOfAPage)
{
    ReportPage page;
    ASSERT_EQ(Parse(kWholePage, page), kGood);
    EXPECT_TRUE(page.is_rowcolumn_data);
    EXPECT_FALSE(page.is_last);
    ASSERT_EQ(page.sheets.size(), 1u);
    const ExportSheet& sheet = page.sheets[0];
    EXPECT_EQ(sheet.sheet_name, "Alarms");
    EXPECT_EQ(sheet.page_index, 3);
    ASSERT_EQ(sheet.vec_titles.size(), 1u);
    EXPECT_EQ(sheet.vec_titles[0].cell_name, "Events");
    const FetchyardLogical::CellFormat& format = sheet.vec_titles[0].cell_format;
    EXPECT_EQ(format.font_family, "Arial");
    EXPECT_EQ(format.font_size, 11);
    EXPECT_TRUE(format.is_blod);
    EXPECT_EQ(format.text_location, 1);
    EXPECT_EQ(format.background_color, "#DDEBF7");
    EXPECT_EQ(format.text_color, "#000000");
    EXPECT_TRUE(format.is_need_wrap);
    EXPECT_EQ(format.cell_type, 4);
    EXPECT_EQ(format.column_width, 20);
    EXPECT_EQ(format.valid_list, "a,b");
}

TEST(PageParser, ReadsCellsColumnsAndMerges)
{
    ReportPage page;
    ASSERT_EQ(Parse(kWholePage, page), kGood);
    const ExportSheet& sheet = page.sheets.at(0);
    ASSERT_EQ(sheet.vec_columns.size(), 2u);
    EXPECT_EQ(sheet.vec_columns[0].cell_name, "Time");
    EXPECT_EQ(sheet.vec_columns[1].cell_format.cell_type, 2);
    ASSERT_EQ(sheet.vec_merges.size(), 1u);
    EXPECT_EQ(sheet.vec_merges[0].first_row, 0);
    EXPECT_EQ(sheet.vec_merges[0].first_column, 1);
    EXPECT_EQ(sheet.vec_merges[0].last_row, 2);
    EXPECT_EQ(sheet.vec_merges[0].last_column, 5);
    EXPECT_EQ(sheet.vec_merges[0].merge_text, "merged");
    EXPECT_TRUE(sheet.vec_merges[0].cell_format.is_blod);
    ASSERT_EQ(sheet.vec_rows.size(), 2u);
    ASSERT_EQ(sheet.vec_rows[0].size(), 2u);
    EXPECT_TRUE(sheet.vec_rows[1].empty());
    const ExportCell& plain = sheet.vec_rows[0][0];
    EXPECT_EQ(plain.cell_name, "12:00");
    EXPECT_EQ(plain.work_station_id, 0xFFFFFFFFu);
    EXPECT_EQ(plain.cell_format.cell_type, 0);
    const ExportCell& picture = sheet.vec_rows[0][1];
    EXPECT_EQ(picture.cell_name, "/pictures/1.jpg");
    EXPECT_EQ(picture.file_title, "door");
    EXPECT_EQ(picture.work_station_id, 9u);
    EXPECT_EQ(picture.cell_format.cell_type, 2);
}

TEST(PageParser, FormatsBehindTheCellsGiveTheSamePage)
{
    ReportPage page;
    ASSERT_EQ(Parse(R"({"Sheets":[{"Rows":[[{"Format":0,"Text":"a"}],["b"]],"Titles":["t"],
        "Merges":[{"FirstRow":0,"FirstColumn":0,"LastRow":0,"LastColumn":1,"Format":1}],
        "Columns":[{"Text":"c","Format":1}],"Formats":[{"CellType":6},{"FontSize":9}],
        "PageIndex":1,"SheetName":"S"},{"PageIndex":2,"Rows":[["z"]]}],"TotalPageIsFinished":true})",
                    page),
              kGood);
    ASSERT_EQ(page.sheets.size(), 2u);
    const ExportSheet& sheet = page.sheets[0];
    EXPECT_EQ(sheet.sheet_name, "S");
    ASSERT_EQ(sheet.vec_rows.size(), 2u);
    EXPECT_EQ(sheet.vec_rows[0].at(0).cell_name, "a");
    EXPECT_EQ(sheet.vec_rows[0][0].cell_format.cell_type, 6);
    EXPECT_EQ(sheet.vec_rows[1].at(0).cell_name, "b");
    EXPECT_EQ(sheet.vec_titles.size(), 1u);
    ASSERT_EQ(sheet.vec_columns.size(), 1u);
    EXPECT_EQ(sheet.vec_columns[0].cell_format.font_size, 9);
    ASSERT_EQ(sheet.vec_merges.size(), 1u);
    EXPECT_EQ(sheet.vec_merges[0].cell_format.font_size, 9);
    EXPECT_EQ(page.sheets[1].page_index, 2);
    EXPECT_EQ(page.sheets[1].vec_rows.at(0).at(0).cell_name, "z");
    EXPECT_TRUE(page.is_last);
}

TEST(PageParser, FormatsBetweenTheCellsReachThoseInFrontOfThem)
{
    ReportPage page;
    ASSERT_EQ(Parse(Sheet(R"(,"Columns":[{"Text":"c","Format":0}],"Formats":[{"FontSize":9}],
        "Rows":[[{"Text":"r","Format":0}]])"),
                    page),
              kGood);
    ASSERT_EQ(page.sheets.at(0).vec_rows.size(), 1u);
    EXPECT_EQ(page.sheets[0].vec_rows[0].at(0).cell_format.font_size, 9);
    ASSERT_EQ(page.sheets[0].vec_columns.size(), 1u);
    EXPECT_EQ(page.sheets[0].vec_columns[0].cell_format.font_size, 9);
}

TEST(PageParser, EscapesAndAllScriptsArriveAsUtf8)
{
    ReportPage page;
    ASSERT_EQ(Parse(Sheet(R"(,"Rows":[["a\"\\\/\n\té\u4e2d\ud83d\ude00","摄像头 مرحبا 😀",""]])"), page),
              kGood);
    const auto& row = page.sheets.at(0).vec_rows.at(0);
    EXPECT_EQ(row.at(0).cell_name, "a\"\\/\n\t\xc3\xa9\xe4\xb8\xad\xf0\x9f\x98\x80");
    EXPECT_EQ(row.at(1).cell_name, "摄像头 مرحبا 😀");
    EXPECT_EQ(row.at(2).cell_name, "");
}

TEST(PageParser, ATextMayHoldAZeroByte)
{
    ReportPage page;
    ASSERT_EQ(Parse(Sheet(R"(,"Rows":[["a\u0000b"]])"), page), kGood);
    EXPECT_EQ(page.sheets.at(0).vec_rows.at(0).at(0).cell_name, std::string("a\0b", 3));
}

TEST(PageParser, TheServersOwnErrorIsThePair)
{
    EXPECT_EQ(Parse(R"({"ErrorModule":24,"ErrorCode":2})"), std::make_pair(24, 2));
    EXPECT_EQ(Parse(R"({"ErrorCode":5,"Sheets":null})"), std::make_pair(0, 5));
    EXPECT_EQ(Parse(R"({"TotalPageIsFinished":true,"Sheets":[],"ErrorModule":24,"ErrorCode":1})"),
              std::make_pair(24, 1));
}

TEST(PageParser, APageWithoutSheetsIsAPage)
{
    ReportPage page;
    EXPECT_EQ(Parse(R"({"TotalPageIsFinished":true,"Sheets":[]})", page), kGood);
    EXPECT_TRUE(page.is_rowcolumn_data);
    EXPECT_TRUE(page.is_last);
    EXPECT_TRUE(page.sheets.empty());
}

TEST(PageParser, NullCountsAsAbsent)
{
    ReportPage page;
    ASSERT_EQ(Parse(R"({"ErrorModule":null,"IsRowColumnData":null,"TotalPageIsFinished":true,"Sheets":[
        {"SheetName":null,"PageIndex":1,"Formats":null,"Titles":null,"Merges":null,
         "Rows":[[{"Text":"x","Format":null,"Title":null,"Site":null}]]}]})",
                    page),
              kGood);
    const ExportCell& cell = page.sheets.at(0).vec_rows.at(0).at(0);
    EXPECT_EQ(cell.cell_name, "x");
    EXPECT_EQ(cell.work_station_id, 0xFFFFFFFFu);
}

TEST(PageParser, UnknownMembersArePassedOver)
{
    ReportPage page;
    ASSERT_EQ(Parse(R"({"Extra":{"Deep":[[[{"a":[1,2,{"b":null}]}]]]},"TotalPageIsFinished":true,"Sheets":[
        {"Other":[[1],[2]],"PageIndex":1,"Formats":[{"Unknown":1.5}],
         "Rows":[[{"More":[1],"Text":"x"}]]}],"Tail":"end"})",
                    page),
              kGood);
    EXPECT_EQ(page.sheets.at(0).vec_rows.at(0).at(0).cell_name, "x");
}

TEST(PageParser, AServerGeneratedReportFillsItsFourRequests)
{
    ReportPage page;
    ASSERT_EQ(Parse(R"({"IsRowColumnData":false,"ServerGenerate":{"FileIsCreated":true,"TaskId":"t1",
        "Query":{"Method":"POST","Api":"/q","Request":"{\"a\":1}","SiteId":2,"Pattern":0,"TaskId":"t2"},
        "Download":{"Api":"/d","PdfPageSize":"A3","PdfPageOrientation":0},"Operate":{"Api":"/o"}}})",
                    page),
              kGood);
    EXPECT_FALSE(page.is_rowcolumn_data);
    EXPECT_TRUE(page.server.file_is_created);
    const auto& query = page.server.query_request;
    EXPECT_EQ(query.str_method, "POST");
    EXPECT_EQ(query.str_quern, "/q");
    EXPECT_EQ(query.str_request, "{\"a\":1}");
    EXPECT_EQ(query.site_id, 2);
    EXPECT_EQ(query.pattern, 0);
    EXPECT_EQ(query.task_id, "t2");
    EXPECT_EQ(page.server.download_request.pdf_page_size, "A3");
    EXPECT_EQ(page.server.download_request.pdf_page_orintation, 0);
    EXPECT_EQ(page.server.download_request.site_id, 7);
    EXPECT_EQ(page.server.download_request.task_id, "t1");
    EXPECT_EQ(page.server.operate_request.str_quern, "/o");
    EXPECT_EQ(page.server.delete_cache_request.str_quern, "");
    EXPECT_EQ(page.server.delete_cache_request.pdf_page_size, "A4");
}

TEST(PageParser, AnAnswerThatIsNoPageIsNotUnderstood)
{
    for (const char* text : {"",
                             " ",
                             "garbage",
                             "<html>500</html>",
                             "null",
                             "17",
                             "\"text\"",
                             "[]",
                             "{}",
                             "{",
                             "}",
                             "{]",
                             "[}",
                             R"({"Sheets":[]})",
                             R"({"TotalPageIsFinished":true})",
                             R"({"TotalPageIsFinished":null,"Sheets":[]})",
                             R"({"TotalPageIsFinished":true,"Sheets":null})",
                             R"({"TotalPageIsFinished":1,"Sheets":[]})",
                             R"({"TotalPageIsFinished":"true","Sheets":[]})",
                             R"({"TotalPageIsFinished":true,"Sheets":{}})",
                             R"({"TotalPageIsFinished":true,"Sheets":[null]})",
                             R"({"TotalPageIsFinished":true,"Sheets":[7]})",
                             R"({"IsRowColumnData":false})",
                             R"({"IsRowColumnData":false,"ServerGenerate":null})",
                             R"({"IsRowColumnData":false,"ServerGenerate":[]})",
                             R"({"IsRowColumnData":false,"ServerGenerate":{"Query":"x"}})",
                             R"({"IsRowColumnData":"no","TotalPageIsFinished":true,"Sheets":[]})",
                             R"({"ErrorModule":"x","TotalPageIsFinished":true,"Sheets":[]})",
                             R"({"TotalPageIsFinished":true,"Sheets":[]} trailing)",
                             R"({"TotalPageIsFinished":true,"Sheets":[]}{})",
                             R"({"TotalPageIsFinished":true,"Sheets":[]},)"})
        EXPECT_EQ(Parse(text), kNotUnderstood) << text;
}

TEST(PageParser, ASheetWithAWrongNumberIsNotUnderstood)
{
    for (const char* number : {"0", "-1", "1.5", "1e3", "2147483648", "9223372036854775808", "-9e99", "NaN",
                               "\"1\"", "null", "true", "[1]"})
        EXPECT_EQ(
            Parse(R"({"TotalPageIsFinished":true,"Sheets":[{"PageIndex":)" + std::string(number) + "}]}"),
            kNotUnderstood)
            << number;
    EXPECT_EQ(Parse(R"({"TotalPageIsFinished":true,"Sheets":[{}]})"), kNotUnderstood);
    ReportPage page;
    EXPECT_EQ(Parse(R"({"TotalPageIsFinished":true,"Sheets":[{"PageIndex":2147483647}]})", page), kGood);
    EXPECT_EQ(page.sheets.at(0).page_index, 2147483647);
}

TEST(PageParser, WhatIsNoCellIsNotUnderstood)
{
    for (const char* cell : {"1",
                             "-1.5",
                             "true",
                             "null",
                             "NaN",
                             "[]",
                             "[\"a\"]",
                             "{}",
                             "{\"Text\":null}",
                             "{\"Text\":5}",
                             "{\"Text\":[]}",
                             "{\"Text\":{}}",
                             "{\"Text\":\"a\",\"Title\":5}",
                             "{\"Text\":\"a\",\"Site\":-1}",
                             "{\"Text\":\"a\",\"Site\":4294967296}",
                             "{\"Text\":\"a\",\"Site\":\"1\"}",
                             "\"\\q\"",
                             "\"\\ud800\"",
                             "\"\\u12\"",
                             "'a'",
                             "\"a\" \"b\"",
                             ""}) {
        EXPECT_EQ(Parse(Sheet(",\"Formats\":[],\"Rows\":[[\"a\"," + std::string(cell) + "]]")),
                  kNotUnderstood)
            << cell;
        EXPECT_EQ(Parse(Sheet(",\"Rows\":[[\"a\"," + std::string(cell) + "]]")), kNotUnderstood) << cell;
    }
}

TEST(PageParser, ARowIsAList)
{
    for (const char* row : {"null", "\"a\"", "{}", "{\"0\":\"a\"}", "1"})
        EXPECT_EQ(Parse(Sheet(",\"Formats\":[],\"Rows\":[" + std::string(row) + "]")), kNotUnderstood) << row;
    EXPECT_EQ(Parse(Sheet(",\"Formats\":[],\"Rows\":{}")), kNotUnderstood);
    EXPECT_EQ(Parse(Sheet(",\"Formats\":{},\"Rows\":[]")), kNotUnderstood);
}

TEST(PageParser, AFormatThatIsNotThereIsNotUnderstood)
{
    for (const char* format : {"1", "-1", "1.0", "\"0\"", "18446744073709551616", "true"}) {
        const std::string cell = ",\"Rows\":[[{\"Text\":\"a\",\"Format\":" + std::string(format) + "}]]";
        EXPECT_EQ(Parse(Sheet(",\"Formats\":[{}]" + cell)), kNotUnderstood) << format;
        EXPECT_EQ(Parse(Sheet(cell + ",\"Formats\":[{}]")), kNotUnderstood) << format;
    }
    EXPECT_EQ(Parse(Sheet(",\"Rows\":[[{\"Text\":\"a\",\"Format\":0}]]")), kNotUnderstood);
}

TEST(PageParser, AFormatOfAnotherKindIsNotUnderstood)
{
    for (const char* format : {"5", "\"bold\"", "[]", "{\"FontSize\":\"11\"}", "{\"FontSize\":11.5}",
                               "{\"FontSize\":99999999999}", "{\"IsBold\":1}", "{\"TextColor\":7}"})
        EXPECT_EQ(Parse(Sheet(",\"Formats\":[" + std::string(format) + "]")), kNotUnderstood) << format;
}

TEST(PageParser, AMergeHasFourCoordinatesInOrder)
{
    const auto merge = [](const std::string& members) {
        return Parse(Sheet(",\"Formats\":[],\"Merges\":[{" + members + "}]"));
    };
    EXPECT_EQ(merge(R"("FirstRow":0,"FirstColumn":0,"LastRow":0,"LastColumn":0)"), kGood);
    EXPECT_EQ(merge(R"("FirstRow":0,"FirstColumn":0,"LastRow":0)"), kNotUnderstood);
    EXPECT_EQ(merge(R"("FirstRow":-1,"FirstColumn":0,"LastRow":0,"LastColumn":0)"), kNotUnderstood);
    EXPECT_EQ(merge(R"("FirstRow":2,"FirstColumn":0,"LastRow":1,"LastColumn":0)"), kNotUnderstood);
    EXPECT_EQ(merge(R"("FirstRow":0,"FirstColumn":3,"LastRow":1,"LastColumn":2)"), kNotUnderstood);
}

TEST(PageParser, EveryCutOfAPageIsNotUnderstood)
{
    const std::string whole = kWholePage;
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_EQ(Parse(whole.substr(0, size)), kNotUnderstood) << size;
    EXPECT_EQ(Parse(whole), kGood);
}

TEST(PageParser, EveryOverwrittenByteEndsInAPageOrAnError)
{
    const std::string whole = kWholePage;
    for (std::size_t at = 0; at < whole.size(); ++at)
        for (const char byte : {'\0', '"', '{', ']', ',', '\\', '7', '\xff'}) {
            std::string text = whole;
            text[at] = byte;
            ReportPage page;
            const auto result = Parse(text, page);
            EXPECT_TRUE(result == kNotUnderstood || !page.sheets.empty() || result.first != 0) << at;
        }
}

TEST(PageParser, InvalidUtf8IsNotUnderstood)
{
    EXPECT_EQ(Parse(Sheet(",\"Rows\":[[\"\xff\"]]")), kNotUnderstood);
    EXPECT_EQ(Parse(Sheet(",\"Rows\":[[\"\xe4\xb8\"]]")), kNotUnderstood);
    EXPECT_EQ(Parse(Sheet(",\"Rows\":[[\"\xed\xa0\x80\"]]")), kNotUnderstood);
    EXPECT_EQ(Parse(Sheet(",\"Rows\":[[\"a\nb\"]]")), kNotUnderstood);
}

TEST(PageParser, DeepNestingIsRefusedOrPassedOver)
{
    const std::string open(100000, '[');
    const std::string close(100000, ']');
    EXPECT_EQ(Parse(open), kNotUnderstood);
    EXPECT_EQ(Parse(open + close), kNotUnderstood);
    EXPECT_EQ(Parse(Sheet(",\"Formats\":[],\"Rows\":[" + open + close + "]")), kNotUnderstood);
    EXPECT_EQ(Parse(Sheet(",\"Other\":" + open + close)), kGood);
}

TEST(PageParser, ARowMayHaveAHundredThousandCells)
{
    std::string row = "[\"c\"";
    for (int i = 1; i < 100000; ++i)
        row += ",\"c\"";
    ReportPage page;
    ASSERT_EQ(Parse(Sheet(",\"Formats\":[],\"Rows\":[" + row + "]]"), page), kGood);
    EXPECT_EQ(page.sheets.at(0).vec_rows.at(0).size(), 100000u);
}

TEST(PageParser, ATextMayHaveMegabytes)
{
    const std::string text(3u << 20, 'x');
    ReportPage page;
    ASSERT_EQ(Parse(Sheet(",\"Rows\":[[\"" + text + "\"]]"), page), kGood);
    EXPECT_EQ(page.sheets.at(0).vec_rows.at(0).at(0).cell_name, text);
}

TEST(PageParser, LongNamesWalkedTwiceStayWithinTheParsersMemory)
{
    const std::string name(1u << 20, 'n');
    ReportPage page;
    ASSERT_EQ(Parse(Sheet(",\"Rows\":[[\"a\"]],\"" + name + "\":\"" + name + "\""), page), kGood);
    EXPECT_EQ(page.sheets.at(0).vec_rows.size(), 1u);
}

TEST(PageParser, NoTextIsReadTwiceWhereFormatsStandBetweenTheCells)
{
    const std::string text(1u << 20, 'x');
    ReportPage page;
    ASSERT_EQ(Parse(Sheet(",\"Titles\":[\"t\"],\"Formats\":[{}],\"Rows\":[[\"" + text + "\"]]"), page),
              kGood);
    ASSERT_EQ(page.sheets.at(0).vec_rows.size(), 1u);
    EXPECT_EQ(page.sheets[0].vec_rows[0].at(0).cell_name, text);
    EXPECT_EQ(page.sheets[0].vec_titles.size(), 1u);
}
