#include <algorithm>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "base/wtf8.h"
#include "platform/linux/adapters.h"
#include "platform/linux/registry_file.h"

namespace kelvane {
namespace {

using linux_os::RegistryFile;
using linux_os::settingsCode;
using linux_os::SqliteDatabase;
using linux_os::SqliteStatement;

// The numbers of the registry's own types.
constexpr std::int64_t textType = 1;
constexpr std::int64_t blockType = 3;
constexpr std::int64_t numberType = 4;

// Sections inside sections; the registry has the same limit.
constexpr std::size_t deepest = 512;

// A value as its two columns hold it.
struct Column {
    std::int64_t type = 0;
    std::int64_t number = 0;
    std::string text;
    std::span<const std::byte> block;
};

void bind(SqliteStatement& statement, const Column& column)
{
    statement.bind(column.type);
    if (column.type == numberType)
        statement.bind(column.number);
    else if (column.type == textType)
        statement.bind(column.text);
    else
        statement.bind(column.block);
}

// Leading, trailing and doubled backslashes part nothing.
std::vector<std::u16string_view> partsOf(std::u16string_view path)
{
    std::vector<std::u16string_view> parts;
    while (!path.empty()) {
        const std::u16string_view part = path.substr(0, path.find(u'\\'));
        path.remove_prefix(std::min(part.size() + 1, path.size()));
        if (!part.empty())
            parts.push_back(part);
    }
    return parts;
}

// A section's path as it was written, and as it is compared.
struct SectionPath {
    std::string path;
    std::string key;
};

class SqliteSettingsStore final : public SettingsStore {
public:
    SqliteSettingsStore(std::filesystem::path file, const TextFolding& folding)
        : file_(std::move(file)), folding_(folding)
    {
    }

    std::unique_ptr<SettingsSection> open(std::u16string_view path, SettingsAccess access) override;
    SettingsCode deleteSection(std::u16string_view path) override;
    SettingsCode begin() override;
    SettingsCode commit() override;
    void discard() override;

    std::string complaint() const override
    {
        const std::scoped_lock lock(mutex_);
        return file_.complaint();
    }
    bool isWritable() override
    {
        const std::scoped_lock lock(mutex_);
        return file_.isWritable();
    }

    [[nodiscard]] std::string keyOf(std::u16string_view name) const { return wtf8FromUnits(folding_.lower(name)); }

    // Runs `work(database)`, which gives a code of SQLite, with the store to itself. For a change it is a transaction
    // of its own when none was begun.
    template <class Work>
    [[nodiscard]] SettingsCode read(Work work);
    template <class Work>
    [[nodiscard]] SettingsCode change(Work work);

    // Within change(): the section with those above it.
    [[nodiscard]] static int make(SqliteDatabase& database, const std::vector<SectionPath>& sections);

    // From the root down to the section itself.
    [[nodiscard]] std::vector<SectionPath> wayTo(std::u16string_view path) const;

private:
    [[nodiscard]] SettingsCode changeAlone(SqliteDatabase& database, const std::function<int()>& work);
    void rollBack(SqliteDatabase& database);

    mutable std::mutex mutex_;
    mutable RegistryFile file_;  // looks at the file anew when it is asked
    const TextFolding& folding_;
    bool begun_ = false;
    SettingsCode lost_ = SettingsCode::done;  // why the transaction that was begun is gone
};

class SqliteSection final : public SettingsSection {
public:
    SqliteSection(SqliteSettingsStore& store, std::vector<SectionPath> way, SettingsAccess access)
        : store_(store), way_(std::move(way)), access_(access)
    {
    }

    SettingsCode readNumber(std::u16string_view name, std::uint32_t& value) const override;
    SettingsCode readText(std::u16string_view name, std::u16string& text) const override;
    SettingsCode readBlock(std::u16string_view name, std::vector<std::byte>& block) const override;

    SettingsCode writeNumber(std::u16string_view name, std::uint32_t value) override
    {
        return write(name, {numberType, value, {}, {}});
    }
    SettingsCode writeText(std::u16string_view name, std::u16string_view text) override
    {
        return write(name, {textType, 0, wtf8FromUnits(text), {}});
    }
    SettingsCode writeBlock(std::u16string_view name, const std::vector<std::byte>& block) override
    {
        return write(name, {blockType, 0, {}, block});
    }
    SettingsCode deleteValue(std::u16string_view name) override;

    std::vector<std::u16string> valueNames() const override;
    std::vector<std::u16string> subsectionNames() const override;

private:
    [[nodiscard]] const std::string& key() const { return way_.back().key; }
    [[nodiscard]] SettingsCode write(std::u16string_view name, const Column& column);
    // Calls `take(row)` with the value when it is of that type in both senses.
    template <class Take>
    [[nodiscard]] SettingsCode read(std::u16string_view name, std::int64_t type, int sqliteType, Take take) const;

    SqliteSettingsStore& store_;
    std::vector<SectionPath> way_;
    SettingsAccess access_;
};

template <class Work>
SettingsCode SqliteSettingsStore::read(Work work)
{
    const std::scoped_lock lock(mutex_);
    SettingsCode reason = SettingsCode::done;
    SqliteDatabase* database = file_.forReading(reason);
    if (database == nullptr)
        return reason == SettingsCode::done ? SettingsCode::notFound : reason;
    const int code = work(*database);
    file_.report(code);
    return settingsCode(code);
}

template <class Work>
SettingsCode SqliteSettingsStore::change(Work work)
{
    const std::scoped_lock lock(mutex_);
    if (lost_ != SettingsCode::done)
        return lost_;
    SettingsCode reason = SettingsCode::done;
    SqliteDatabase* database = file_.forWriting(reason);
    if (database == nullptr)
        return reason;
    if (!begun_)
        return changeAlone(*database, [&] { return work(*database); });
    const int code = database->isInTransaction() ? work(*database) : SQLITE_ABORT_ROLLBACK;
    // A full disk or a failing one makes SQLite give up the whole transaction; what comes after must not stand alone.
    if (!database->isInTransaction())
        lost_ = settingsCode(code);
    return settingsCode(code);
}

SettingsCode SqliteSettingsStore::changeAlone(SqliteDatabase& database, const std::function<int()>& work)
{
    int code = database.execute("BEGIN IMMEDIATE");
    if (code == SQLITE_OK)
        code = work();
    if (code == SQLITE_OK)
        code = database.execute("COMMIT");
    if (code != SQLITE_OK)
        rollBack(database);
    file_.report(code);
    return settingsCode(code);
}

void SqliteSettingsStore::rollBack(SqliteDatabase& database)
{
    // Fails only where there is nothing to roll back any more, or where the next reader will do it from the journal.
    if (database.isInTransaction())
        (void)database.execute("ROLLBACK");
}

std::vector<SectionPath> SqliteSettingsStore::wayTo(std::u16string_view path) const
{
    std::vector<SectionPath> way{{}};
    for (const std::u16string_view part : partsOf(path)) {
        const std::string head = way.size() > 1 ? way.back().path + '\\' : "";
        const std::string keyHead = way.size() > 1 ? way.back().key + '\\' : "";
        way.push_back({head + wtf8FromUnits(part), keyHead + keyOf(part)});
    }
    return way;
}

int SqliteSettingsStore::make(SqliteDatabase& database, const std::vector<SectionPath>& sections)
{
    int code = SQLITE_OK;
    for (const SectionPath& section : sections) {
        if (code == SQLITE_OK)
            code = SqliteStatement(database, "INSERT OR IGNORE INTO section(key, path) VALUES(?, ?)")
                       .bind(section.key)
                       .bind(section.path)
                       .run();
    }
    return code;
}

std::unique_ptr<SettingsSection> SqliteSettingsStore::open(std::u16string_view path, SettingsAccess access)
{
    std::vector<SectionPath> way = wayTo(path);
    if (way.size() > deepest)
        return nullptr;
    SettingsCode code = SettingsCode::done;
    if (access == SettingsAccess::writing) {
        code = change([&](SqliteDatabase& database) { return make(database, way); });
    } else if (way.size() > 1) {
        bool isThere = false;
        code = read([&](SqliteDatabase& database) {
            SqliteStatement statement(database, "SELECT 1 FROM section WHERE key = ?");
            const int found = statement.bind(way.back().key).step();
            isThere = found == SQLITE_ROW;
            return found;
        });
        code = isThere ? code : SettingsCode::notFound;
    }
    return code == SettingsCode::done ? std::make_unique<SqliteSection>(*this, std::move(way), access) : nullptr;
}

SettingsCode SqliteSettingsStore::deleteSection(std::u16string_view path)
{
    const std::string key = wayTo(path).back().key;
    // A file is not made, nor a damaged one replaced, only to take something out of it.
    if (read([](SqliteDatabase&) { return SQLITE_OK; }) == SettingsCode::notFound)
        return SettingsCode::done;
    return change([&](SqliteDatabase& database) {
        // "]" follows the backslash: the range holds the keys that begin with the section's and a backslash.
        const std::string first = key + '\\', end = key + ']';
        SqliteStatement some(database, "DELETE FROM section WHERE key = ? OR (key >= ? AND key < ?)");
        return key.empty() ? database.execute("DELETE FROM section") : some.bind(key).bind(first).bind(end).run();
    });
}

SettingsCode SqliteSettingsStore::begin()
{
    const std::scoped_lock lock(mutex_);
    if (begun_)
        throw std::logic_error("settings were begun twice");
    SettingsCode reason = SettingsCode::done;
    SqliteDatabase* database = file_.forWriting(reason);
    if (database == nullptr)
        return reason;
    const int code = database->execute("BEGIN IMMEDIATE");
    file_.report(code);
    begun_ = code == SQLITE_OK;
    lost_ = SettingsCode::done;
    return settingsCode(code);
}

SettingsCode SqliteSettingsStore::commit()
{
    const std::scoped_lock lock(mutex_);
    if (!std::exchange(begun_, false))
        return SettingsCode::done;
    if (lost_ != SettingsCode::done)
        return std::exchange(lost_, SettingsCode::done);
    SettingsCode reason = SettingsCode::done;
    SqliteDatabase* database = file_.forWriting(reason);
    if (database == nullptr)
        return reason;
    const int code = database->execute("COMMIT");
    if (code != SQLITE_OK)
        rollBack(*database);
    file_.report(code);
    return settingsCode(code);
}

void SqliteSettingsStore::discard()
{
    const std::scoped_lock lock(mutex_);
    lost_ = SettingsCode::done;
    SettingsCode reason = SettingsCode::done;
    if (SqliteDatabase* database = std::exchange(begun_, false) ? file_.forReading(reason) : nullptr)
        rollBack(*database);
}

template <class Take>
SettingsCode SqliteSection::read(std::u16string_view name, std::int64_t type, int sqliteType, Take take) const
{
    const std::string nameKey = store_.keyOf(name);
    SettingsCode found = SettingsCode::notFound;
    const SettingsCode code = store_.read([&](SqliteDatabase& database) {
        SqliteStatement row(database, "SELECT value.type, value.data FROM value JOIN section ON section.id = "
                                      "value.section WHERE section.key = ? AND value.key = ?");
        const int step = row.bind(key()).bind(nameKey).step();
        if (step != SQLITE_ROW)
            return step;
        const bool matches = row.integer(0) == type && row.type(1) == sqliteType;
        found = matches && take(row) ? SettingsCode::done : SettingsCode::invalidData;
        return step;
    });
    return code == SettingsCode::done ? found : code;
}

SettingsCode SqliteSection::readNumber(std::u16string_view name, std::uint32_t& value) const
{
    const SettingsCode code = read(name, numberType, SQLITE_INTEGER, [&](const SqliteStatement& row) {
        if (!std::in_range<std::uint32_t>(row.integer(1)))
            return false;
        value = static_cast<std::uint32_t>(row.integer(1));
        return true;
    });
    return code == SettingsCode::notFound ? SettingsCode::invalidData : code;
}

SettingsCode SqliteSection::readText(std::u16string_view name, std::u16string& text) const
{
    return read(name, textType, SQLITE_TEXT, [&](const SqliteStatement& row) {
        text = unitsFromWtf8(row.text(1));
        return true;
    });
}

SettingsCode SqliteSection::readBlock(std::u16string_view name, std::vector<std::byte>& block) const
{
    return read(name, blockType, SQLITE_BLOB, [&](const SqliteStatement& row) {
        block = row.block(1);
        return true;
    });
}

SettingsCode SqliteSection::write(std::u16string_view name, const Column& column)
{
    if (access_ == SettingsAccess::reading)
        return SettingsCode::accessDenied;
    const std::string nameText = wtf8FromUnits(name), nameKey = store_.keyOf(name);
    return store_.change([&](SqliteDatabase& database) {
        if (const int code = SqliteSettingsStore::make(database, way_); code != SQLITE_OK)
            return code;
        // A value that is there keeps its place in the order.
        SqliteStatement statement(database,
                                  "INSERT INTO value(section, key, name, type, data) "
                                  "VALUES((SELECT id FROM section WHERE key = ?), ?, ?, ?, ?) "
                                  "ON CONFLICT(section, key) DO UPDATE SET type = excluded.type, data = excluded.data");
        bind(statement.bind(key()).bind(nameKey).bind(nameText), column);
        return statement.run();
    });
}

SettingsCode SqliteSection::deleteValue(std::u16string_view name)
{
    if (access_ == SettingsAccess::reading)
        return SettingsCode::accessDenied;
    const std::string nameKey = store_.keyOf(name);
    bool wasThere = false;
    const SettingsCode code = store_.change([&](SqliteDatabase& database) {
        SqliteStatement statement(
            database, "DELETE FROM value WHERE section = (SELECT id FROM section WHERE key = ?) AND key = ?");
        const int result = statement.bind(key()).bind(nameKey).run();
        wasThere = result == SQLITE_OK && sqlite3_changes(database.get()) > 0;
        return result;
    });
    return code == SettingsCode::done && !wasThere ? SettingsCode::notFound : code;
}

std::vector<std::u16string> SqliteSection::valueNames() const
{
    std::vector<std::u16string> names;
    // A list that cannot be read is as good as an empty one.
    (void)store_.read([&](SqliteDatabase& database) {
        SqliteStatement rows(database, "SELECT value.name FROM value JOIN section ON section.id = value.section "
                                       "WHERE section.key = ? ORDER BY value.id");
        int code = rows.bind(key()).step();
        for (; code == SQLITE_ROW; code = rows.step())
            names.push_back(unitsFromWtf8(rows.text(0)));
        return code;
    });
    return names;
}

std::vector<std::u16string> SqliteSection::subsectionNames() const
{
    const std::string head = key().empty() ? "" : key() + '\\';
    std::vector<std::u16string> names;
    (void)store_.read([&](SqliteDatabase& database) {
        SqliteStatement rows(database, "SELECT key, path FROM section WHERE key > ? ORDER BY id");
        int code = rows.bind(head).step();
        for (; code == SQLITE_ROW; code = rows.step()) {
            const std::string found = rows.text(0), path = rows.text(1);
            if (found.starts_with(head) && found.find('\\', head.size()) == found.npos)
                names.push_back(unitsFromWtf8(path.substr(path.rfind('\\') + 1)));
        }
        return code;
    });
    return names;
}

}  // namespace

std::unique_ptr<SettingsStore> makeSqliteSettingsStore(std::filesystem::path file, const TextFolding& folding)
{
    return std::make_unique<SqliteSettingsStore>(std::move(file), folding);
}

}  // namespace kelvane
