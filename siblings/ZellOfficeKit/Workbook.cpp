#include "Workbook.h"

#include "OfficeFiles.h"
#include "OfficeLog.h"
#include "Platform/NumberLocale.h"
#include "Platform/SheetStreams.h"
#include "ZellBase/Util.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <numeric>
#include <utility>

namespace ZellOfficeKit {
namespace {

// Rows pack to about a tenth; less than this share of them is never enough.
constexpr std::uint64_t kLeastPackedShare = 20;

lxw_workbook* MakeLibraryWorkbook(const std::string& path, const std::string& work_folder)
{
    std::string local_folder = Zell::Base::UTF8ToLocal(work_folder);
    lxw_workbook_options options = {};
    options.constant_memory = LXW_TRUE;
    options.tmpdir = local_folder.data();
    return workbook_new_opt(Zell::Base::UTF8ToLocal(path).c_str(), &options);
}

}  // namespace

std::unique_ptr<CWorkbook> CWorkbook::Create(const std::string& file_path)
{
    const std::string work_folder = PrepareWorkFolder();
    if (work_folder.empty() || !CanBeCreated(file_path)) {
        OFFICE_LOG_ERROR("CExcelControllorWithC::Init", work_folder.empty()
                                                            ? "the work folder can't be written"
                                                            : file_path + " can't be created");
        return nullptr;
    }
    std::string scratch = work_folder + "/workbook-" + Zell::Base::GuidUtil::CreateGuid() + ".xlsx";
    lxw_workbook* library = MakeLibraryWorkbook(scratch, work_folder);
    if (library == nullptr)
        return nullptr;
    return std::unique_ptr<CWorkbook>(new CWorkbook(library, file_path, std::move(scratch), work_folder));
}

CWorkbook::CWorkbook(lxw_workbook* library, std::string file_path, std::string scratch_path,
                     std::string work_folder)
    : library_(library),
      file_path_(std::move(file_path)),
      scratch_path_(std::move(scratch_path)),
      work_folder_(std::move(work_folder)),
      limits_(CurrentOfficeLimits()),
      formats_(library)
{
}

CWorkbook::~CWorkbook()
{
    Discard();
}

CLogicalSheet* CWorkbook::SheetNamed(const std::string& name)
{
    const auto found = sheets_.find(name);
    if (found != sheets_.end())
        return found->second.get();
    auto sheet = std::make_unique<CLogicalSheet>(name, *this, limits_);
    if (!sheet->Start())
        return nullptr;
    return sheets_.emplace(name, std::move(sheet)).first->second.get();
}

std::unique_ptr<CPhysicalSheet> CWorkbook::MakeSheet(const std::string& name, int number)
{
    std::string own;
    if (number == 1) {
        own = names_.Take(name);
        first_names_[name] = own;
        if (own != name)
            OFFICE_LOG_ERROR("CExcelControllorWithC::AddSheetByName",
                             "the sheet named \"" + name + "\" is called \"" + own + "\" in the workbook");
    } else {
        own = names_.TakeContinuation(first_names_[name], number);
    }
    lxw_worksheet* worksheet = workbook_add_worksheet(library_, own.c_str());
    if (worksheet == nullptr)
        return nullptr;
    worksheets_.push_back(worksheet);
    return std::make_unique<CPhysicalSheet>(worksheet, own, limits_);
}

void CWorkbook::Discard()
{
    if (library_ == nullptr)
        return;
    // Freeing alone would leave the temporary file of each worksheet open.
    for (lxw_worksheet* worksheet : worksheets_)
        std::fclose(worksheet->optimize_tmpfile);
    worksheets_.clear();
    lxw_workbook_free(std::exchange(library_, nullptr));
}

void CWorkbook::Close()
{
    for (const auto& [name, sheet] : sheets_)
        sheet->Finish();
    std::string reason = Pack();
    if (reason.empty() && !MoveIntoPlace(scratch_path_, file_path_))
        reason = "it can't be moved to its path";
    if (!reason.empty())
        SetAside(reason);
}

std::string CWorkbook::LookAtStreams(std::vector<ExpectedSheet>& expected) const
{
    for (lxw_worksheet* worksheet : worksheets_) {
        std::FILE* stream = worksheet->optimize_tmpfile;
        const bool is_whole = std::fflush(stream) == 0 && std::ferror(stream) == 0;
        const std::int64_t size = StreamSize(stream);
        if (!is_whole || size < 0)
            return "rows did not reach the work folder " + work_folder_;
        expected.push_back({worksheet->index + 1, static_cast<std::uint64_t>(size)});
    }
    return {};
}

// The library copies the rows of one sheet after the other into a file of their own before it packs them.
std::string CWorkbook::LookForSpace(const std::vector<ExpectedSheet>& expected) const
{
    std::uint64_t largest = 0;
    std::uint64_t sum = 0;
    for (const ExpectedSheet& sheet : expected) {
        largest = std::max(largest, sheet.row_bytes);
        sum += sheet.row_bytes;
    }
    std::error_code error;
    const auto space = std::filesystem::space(std::filesystem::u8path(work_folder_), error);
    const std::uint64_t needed = largest + sum / kLeastPackedShare + limits_.spare_bytes;
    if (error || space.available >= needed)
        return {};
    return "the work folder " + work_folder_ + " has " + std::to_string(space.available) +
           " bytes left and packing takes " + std::to_string(needed);
}

std::string CWorkbook::Pack()
{
    std::vector<ExpectedSheet> expected;
    std::string reason = LookAtStreams(expected);
    if (reason.empty())
        reason = LookForSpace(expected);
    if (!reason.empty()) {
        Discard();
        return reason;
    }
    const std::uint64_t sum = std::accumulate(
        expected.begin(), expected.end(), std::uint64_t{0},
        [](std::uint64_t so_far, const ExpectedSheet& sheet) { return so_far + sheet.row_bytes; });
    library_->options.use_zip64 = sum > limits_.zip64_above ? LXW_TRUE : LXW_FALSE;

    std::vector<std::FILE*> streams;
    for (const lxw_worksheet* worksheet : worksheets_)
        streams.push_back(worksheet->optimize_tmpfile);
    const CSheetStreams kept(streams);
    worksheets_.clear();
    const CNumberLocale locale;
    // Frees the workbook whatever comes of it.
    const lxw_error error = workbook_close(std::exchange(library_, nullptr));
    if (error != LXW_NO_ERROR) {
        kept.CloseThoseLeft();
        return lxw_strerror(error);
    }
    return FindDamage(scratch_path_, expected);
}

void CWorkbook::SetAside(const std::string& reason) const
{
    const std::string name = NameOfPath(file_path_);
    // An older report of that name would be taken for this one.
    OFFICE_LOG_ERROR("CExcelControllorWithC::Close",
                     "the workbook " + file_path_ + " is not whole: " + reason +
                         MoveAside(scratch_path_, name, "; what there is of it") +
                         MoveAside(file_path_, name, "; an older one"));
}

}  // namespace ZellOfficeKit
