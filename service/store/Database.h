#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace service {

/// What SQLite answered when something did not work.
class DatabaseError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One prepared statement. Owner: its creator, for a shorter time than the database. Throws DatabaseError.
class Statement {
 public:
  /// Sets the next "?", from the first on. Texts are copied.
  Statement& bind(std::int64_t value);
  Statement& bind(double value);
  Statement& bind(std::string_view text);

  /// True while there is a row to read.
  bool step();
  /// Runs to the end and makes it ready to be bound anew.
  void run();

  std::int64_t integer(int column) const;
  double real(int column) const;
  std::string text(int column) const;

 private:
  friend class Database;
  struct Finalise {
    void operator()(sqlite3_stmt* statement) const;
  };
  Statement(sqlite3* database, std::string_view sql);
  void check(int code) const;

  sqlite3* database_;
  std::unique_ptr<sqlite3_stmt, Finalise> statement_;
  int bound_ = 0;
};

/// One connection to an SQLite database. Used by one thread at a time; throws DatabaseError.
class Database {
 public:
  /// Opens or creates a file; ":memory:" is a database of its own that ends with this object.
  explicit Database(const std::filesystem::path& file);

  Statement prepare(std::string_view sql) { return {connection_.get(), sql}; }
  void run(std::string_view sql) { prepare(sql).run(); }
  /// Runs several statements, separated by semicolons.
  void runAll(const char* script);

 private:
  struct Close {
    void operator()(sqlite3* connection) const;
  };
  std::unique_ptr<sqlite3, Close> connection_;
};

/// All or nothing: what was done since its beginning is undone unless it is committed.
class Transaction {
 public:
  explicit Transaction(Database& database) : database_(database) { database_.run("BEGIN IMMEDIATE"); }
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  void commit();

 private:
  Database& database_;
  bool isOpen_ = true;
};

}  // namespace service
