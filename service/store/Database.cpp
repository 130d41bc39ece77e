#include "service/store/Database.h"

#include <sqlite3.h>

namespace service {

void Statement::Finalise::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

Statement::Statement(sqlite3* database, std::string_view sql) : database_(database) {
  sqlite3_stmt* statement = nullptr;
  check(sqlite3_prepare_v2(database, sql.data(), static_cast<int>(sql.size()), &statement, nullptr));
  statement_.reset(statement);
}

void Statement::check(int code) const {
  if (code != SQLITE_OK) throw DatabaseError(sqlite3_errmsg(database_));
}

Statement& Statement::bind(std::int64_t value) {
  check(sqlite3_bind_int64(statement_.get(), ++bound_, value));
  return *this;
}

Statement& Statement::bind(double value) {
  check(sqlite3_bind_double(statement_.get(), ++bound_, value));
  return *this;
}

Statement& Statement::bind(std::string_view text) {
  // An empty view may have no address, which SQLite would take for NULL.
  const char* const bytes = text.empty() ? "" : text.data();
  check(sqlite3_bind_text64(statement_.get(), ++bound_, bytes, text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
  return *this;
}

bool Statement::step() {
  const int code = sqlite3_step(statement_.get());
  if (code == SQLITE_ROW) return true;
  if (code != SQLITE_DONE) throw DatabaseError(sqlite3_errmsg(database_));
  return false;
}

void Statement::run() {
  while (step()) {
  }
  check(sqlite3_reset(statement_.get()));
  bound_ = 0;
}

std::int64_t Statement::integer(int column) const { return sqlite3_column_int64(statement_.get(), column); }

double Statement::real(int column) const { return sqlite3_column_double(statement_.get(), column); }

std::string Statement::text(int column) const {
  const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(statement_.get(), column));
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column));
  return bytes == nullptr ? std::string() : std::string(bytes, size);
}

void Database::Close::operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }

Database::Database(const std::filesystem::path& file) {
  sqlite3* connection = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
  const int code = sqlite3_open_v2(file.c_str(), &connection, flags, nullptr);
  connection_.reset(connection);
  if (code != SQLITE_OK) throw DatabaseError(sqlite3_errstr(code));
  sqlite3_busy_timeout(connection, 5000);
}

void Database::runAll(const char* script) {
  if (sqlite3_exec(connection_.get(), script, nullptr, nullptr, nullptr) != SQLITE_OK)
    throw DatabaseError(sqlite3_errmsg(connection_.get()));
}

Transaction::~Transaction() {
  if (!isOpen_) return;
  try {
    database_.run("ROLLBACK");
  } catch (const DatabaseError&) {
    // SQLite has rolled back by itself, as it does after a full disk.
  }
}

void Transaction::commit() {
  database_.run("COMMIT");
  isOpen_ = false;
}

}  // namespace service
