#pragma once

// A database file that is filled from nothing, by statements of SQL. What goes wrong is told as a failure to write the
// file, with the reason that the library gives.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "companion/new_file.h"

struct sqlite3;
struct sqlite3_stmt;

namespace colx::table {

// An open database. All functions throw output_error.
class Database {
 public:
  // Opens the empty file under its temporary name and begins the one transaction in which everything is written. The
  // file must outlive the database.
  explicit Database(const NewFile& file);

  // Runs statements that have no parameters.
  void run(const std::string& statements);

  // Ends the transaction and closes the database; to be called once, at the end. What is not closed is worthless.
  void close();

 private:
  friend class Statement;

  struct Close {
    void operator()(sqlite3* handle) const;
  };

  void _check(int status) const;

  const NewFile& _file;
  std::unique_ptr<sqlite3, Close> _handle;
};

// A statement that is run again and again with other values for its parameters, which are numbered from 1.
class Statement {
 public:
  // The database must outlive the statement.
  Statement(Database& database, const std::string& text);

  void bind(int parameter, std::int64_t value);
  void bind(int parameter, double value);  // infinities stay what they are, not-a-number is null
  // Bytes that are no UTF-8 become U+FFFD. The text must stay where it is until the statement has been run.
  void bind(int parameter, std::string_view text);
  void bind_null(int parameter);

  void run();

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* handle) const;
  };

  Database& _database;
  std::unique_ptr<sqlite3_stmt, Finalize> _handle;
};

}  // namespace colx::table
