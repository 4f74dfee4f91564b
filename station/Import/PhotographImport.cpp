#include "station/Import/PhotographImport.h"

#include "station/Data/Store.h"
#include "station/Import/PhotographTime.h"
#include "station/Report/JsonText.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QImageReader>

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
#include <system_error>
#include <vector>

namespace Station {
namespace {

constexpr char kCameraName[] = "Photographs";
constexpr std::uintmax_t kMostBytes = 64u << 20;
constexpr std::int64_t kMostPixels = 200000000;

// "jpg" or "png", or nothing for other files.
std::string KindOf(const std::filesystem::path& file)
{
    std::string suffix = file.extension().u8string();
    for (char& letter : suffix)
        letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    if (suffix == ".jpg" || suffix == ".jpeg")
        return "jpg";
    return suffix == ".png" ? "png" : "";
}

std::vector<std::filesystem::path> FindPhotographs(const std::filesystem::path& folder)
{
    using Iterator = std::filesystem::recursive_directory_iterator;
    std::error_code error;
    Iterator entry(folder, std::filesystem::directory_options::skip_permission_denied, error);
    if (error)
        throw StoreError("The folder " + folder.u8string() + " can't be read: " + error.message() + ".");
    std::vector<std::filesystem::path> files;
    for (; entry != Iterator(); entry.increment(error)) {
        std::error_code of_entry;
        if (entry->is_regular_file(of_entry) && !KindOf(entry->path()).empty())
            files.push_back(entry->path());
        if (error)
            break;
    }
    std::sort(files.begin(), files.end());
    return files;
}

bool ReadPhotograph(const std::filesystem::path& file, std::string& bytes, std::string& reason)
{
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    if (error || size > kMostBytes) {
        reason = error ? error.message() : "more than 64 MB";
        return false;
    }
    bytes.resize(static_cast<std::size_t>(size));
    std::ifstream stream(file, std::ios::binary);
    if (!stream.read(bytes.data(), static_cast<std::streamsize>(size))) {
        reason = "the file can't be read";
        return false;
    }
    return true;
}

// Decodes the whole picture: a cut file is not worth an event.
bool IsPicture(const std::string& bytes, const std::string& kind, std::string& reason)
{
    QByteArray view = QByteArray::fromRawData(bytes.data(), static_cast<int>(bytes.size()));
    QBuffer buffer(&view);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, kind == "png" ? "png" : "jpeg");
    const QSize size = reader.size();
    if (static_cast<std::int64_t>(size.width()) * size.height() > kMostPixels) {
        reason = "more than 200 million pixels";
        return false;
    }
    QImage image;
    if (reader.read(&image))
        return true;
    reason = reader.errorString().toStdString();
    return false;
}

std::string DigestOf(const std::string& bytes)
{
    const QByteArray view = QByteArray::fromRawData(bytes.data(), static_cast<int>(bytes.size()));
    return QCryptographicHash::hash(view, QCryptographicHash::Sha256).toHex().toStdString();
}

bool IsKnown(Database& database, const std::string& digest)
{
    Statement query = database.Prepare("SELECT 1 FROM photographs WHERE digest = ?");
    query.Add(std::string_view(digest));
    return query.Step();
}

std::int64_t CameraForPhotographs(Database& database)
{
    {
        Statement query = database.Prepare("SELECT id FROM cameras WHERE name = ?");
        query.Add(std::string_view(kCameraName));
        if (query.Step())
            return query.Int(0);
    }
    return AddCamera(database, {0, kCameraName, "Imported", ""});
}

void CheckCamera(Database& database, std::int64_t camera)
{
    Statement query = database.Prepare("SELECT 1 FROM cameras WHERE id = ?");
    query.Add(camera);
    if (!query.Step())
        throw StoreError("The station has no camera " + std::to_string(camera) + ".");
}

bool WritePhotograph(const std::filesystem::path& file, const std::string& bytes)
{
    std::ofstream out(file, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    return static_cast<bool>(out);
}

// The event and its file come together or not at all.
void AddPhotograph(Database& database, const std::filesystem::path& data, const std::filesystem::path& file,
                   std::int64_t camera, const std::string& bytes, const std::string& digest)
{
    Event event;
    const auto taken = TimeFromExif(bytes);
    event.time = taken ? *taken : TimeFromFile(file);
    event.camera_id = camera;
    event.type = "Photograph";
    event.confidence = 100;
    event.text = ToValidUtf8(file.filename().u8string());
    database.Run("SAVEPOINT photograph");
    const std::int64_t id = AddEvent(database, event);
    const std::string name = "event-" + std::to_string(id) + "." + KindOf(file);
    {
        Statement update = database.Prepare("UPDATE events SET picture = ? WHERE id = ?");
        update.Add(std::string_view(name)).Add(id).Run();
    }
    {
        Statement insert = database.Prepare("INSERT INTO photographs(digest, event) VALUES(?, ?)");
        insert.Add(std::string_view(digest)).Add(id).Run();
    }
    const std::filesystem::path target = PictureFolder(data) / name;
    if (!WritePhotograph(target, bytes)) {
        std::error_code error;
        std::filesystem::remove(target, error);
        database.Run("ROLLBACK TO photograph");
        database.Run("RELEASE photograph");
        throw StoreError("The photograph can't be copied to " + target.u8string() + ".");
    }
    database.Run("RELEASE photograph");
}

}  // namespace

ImportCount ImportPhotographs(Database& database, const std::filesystem::path& data,
                              const std::filesystem::path& folder, std::int64_t camera,
                              std::ostream& complaints)
{
    const std::vector<std::filesystem::path> files = FindPhotographs(folder);
    if (camera != 0)
        CheckCamera(database, camera);
    ImportCount count;
    for (const std::filesystem::path& file : files) {
        std::string bytes;
        std::string reason;
        if (!ReadPhotograph(file, bytes, reason) || !IsPicture(bytes, KindOf(file), reason)) {
            complaints << "skipped " << file.u8string() << ": " << reason << '\n';
            ++count.refused;
            continue;
        }
        const std::string digest = DigestOf(bytes);
        if (IsKnown(database, digest)) {
            ++count.known;
            continue;
        }
        if (camera == 0)
            camera = CameraForPhotographs(database);
        AddPhotograph(database, data, file, camera, bytes, digest);
        ++count.added;
    }
    return count;
}

}  // namespace Station
