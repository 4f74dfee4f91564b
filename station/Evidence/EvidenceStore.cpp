#include "station/Clock.h"
#include "station/Evidence/Evidence.h"
#include "station/Guid.h"

namespace Station {
namespace {

constexpr char kTables[] = R"(
CREATE TABLE IF NOT EXISTS evidence(
  number INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT NOT NULL UNIQUE, registered INTEGER NOT NULL,
  case_number TEXT NOT NULL, title TEXT NOT NULL, remark TEXT NOT NULL, client TEXT NOT NULL);
CREATE INDEX IF NOT EXISTS evidence_by_case ON evidence(case_number);
CREATE TABLE IF NOT EXISTS evidence_files(
  evidence INTEGER NOT NULL REFERENCES evidence(number), name TEXT NOT NULL, bytes INTEGER NOT NULL,
  sha256 TEXT NOT NULL);
CREATE INDEX IF NOT EXISTS evidence_files_by_evidence ON evidence_files(evidence);
)";

constexpr char kSelect[] =
    "SELECT e.guid, e.registered, e.case_number, e.title, e.remark, e.client, e.number, "
    "(SELECT count(*) FROM evidence_files f WHERE f.evidence = e.number), "
    "(SELECT coalesce(sum(f.bytes), 0) FROM evidence_files f WHERE f.evidence = e.number) FROM evidence e";

Evidence ReadRow(const Statement& query)
{
    Evidence evidence;
    evidence.guid = query.Text(0);
    evidence.registered = query.Int(1);
    evidence.case_number = query.Text(2);
    evidence.title = query.Text(3);
    evidence.remark = query.Text(4);
    evidence.client = query.Text(5);
    evidence.file_count = query.Int(7);
    evidence.bytes = query.Int(8);
    return evidence;
}

// Takes back what was not committed.
class Transaction
{
public:
    explicit Transaction(Database& database) : database_(database) { database_.Run("BEGIN IMMEDIATE"); }
    ~Transaction()
    {
        try {
            if (!is_committed_)
                database_.Run("ROLLBACK");
        } catch (const StoreError&) {
            // The store took it back by itself when it failed.
        }
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void Commit()
    {
        database_.Run("COMMIT");
        is_committed_ = true;
    }

private:
    Database& database_;
    bool is_committed_ = false;
};

}  // namespace

void EnsureEvidence(Database& database)
{
    database.Run(kTables);
}

void RegisterEvidence(Database& database, Evidence& evidence)
{
    evidence.guid = NewGuid();
    evidence.registered = Now();
    Transaction transaction(database);
    {
        Statement insert = database.Prepare(
            "INSERT INTO evidence(guid, registered, case_number, title, remark, client) VALUES(?, ?, ?, ?, "
            "?, ?)");
        insert.Add(std::string_view(evidence.guid)).Add(evidence.registered);
        insert.Add(std::string_view(evidence.case_number)).Add(std::string_view(evidence.title));
        insert.Add(std::string_view(evidence.remark)).Add(std::string_view(evidence.client));
        insert.Run();
    }
    const std::int64_t number = database.LastInsertId();
    Statement insert =
        database.Prepare("INSERT INTO evidence_files(evidence, name, bytes, sha256) VALUES(?, ?, ?, ?)");
    for (const EvidenceFile& file : evidence.files) {
        insert.Add(number)
            .Add(std::string_view(file.name))
            .Add(file.bytes)
            .Add(std::string_view(file.sha256));
        insert.Run();
    }
    transaction.Commit();
}

std::vector<Evidence> ListEvidence(Database& database, const std::string& case_number)
{
    const std::string filter = case_number.empty() ? "" : " WHERE e.case_number = ?";
    Statement query = database.Prepare(kSelect + filter + " ORDER BY e.number DESC LIMIT ?");
    if (!case_number.empty())
        query.Add(std::string_view(case_number));
    query.Add(kMostListed);
    std::vector<Evidence> list;
    while (query.Step())
        list.push_back(ReadRow(query));
    return list;
}

std::optional<Evidence> FindEvidence(Database& database, const std::string& guid)
{
    Statement query = database.Prepare(std::string(kSelect) + " WHERE e.guid = ?");
    query.Add(std::string_view(guid));
    if (!query.Step())
        return std::nullopt;
    Evidence evidence = ReadRow(query);
    Statement files =
        database.Prepare("SELECT name, bytes, sha256 FROM evidence_files WHERE evidence = ? ORDER BY rowid");
    files.Add(query.Int(6));
    while (files.Step())
        evidence.files.push_back({std::string(files.Text(0)), files.Int(1), std::string(files.Text(2))});
    return evidence;
}

}  // namespace Station
