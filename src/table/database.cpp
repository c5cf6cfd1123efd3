#include "table/database.h"

#include <sqlite3.h>

#include <fmt/format.h>

#include "companion/errors.h"
#include "companion/utf8.h"

namespace colx::table {

Database::Database(const NewFile& file) : _file(file) {
  sqlite3* handle = nullptr;
  const int status =
      sqlite3_open_v2(file.temporary_path().c_str(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  _handle.reset(handle);
  if (handle == nullptr) throw std::bad_alloc();
  _check(status);
  // Nobody sees the file before it is complete, so there is nothing to roll back to and nothing to wait for the disk
  // for. The cache is what indexes are sorted in.
  run("PRAGMA page_size = 8192; PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA locking_mode = EXCLUSIVE;"
      "PRAGMA cache_size = -65536; PRAGMA encoding = 'UTF-8'; BEGIN;");
}

void Database::Close::operator()(sqlite3* handle) const {
  sqlite3_close_v2(handle);
}

void Database::_check(int status) const {
  if (status == SQLITE_OK || status == SQLITE_ROW || status == SQLITE_DONE) return;
  if (status == SQLITE_NOMEM) throw std::bad_alloc();
  throw output_error(fmt::format("cannot write to {}: {}", _file.path(), sqlite3_errmsg(_handle.get())));
}

void Database::run(const std::string& statements) {
  _check(sqlite3_exec(_handle.get(), statements.c_str(), nullptr, nullptr, nullptr));
}

void Database::close() {
  run("COMMIT");
  _check(sqlite3_close(_handle.get()));
  static_cast<void>(_handle.release());
}

Statement::Statement(Database& database, const std::string& text) : _database(database) {
  sqlite3_stmt* handle = nullptr;
  _database._check(sqlite3_prepare_v3(_database._handle.get(), text.data(), static_cast<int>(text.size()),
                                      SQLITE_PREPARE_PERSISTENT, &handle, nullptr));
  _handle.reset(handle);
}

void Statement::Finalize::operator()(sqlite3_stmt* handle) const {
  sqlite3_finalize(handle);
}

void Statement::bind(int parameter, std::int64_t value) {
  _database._check(sqlite3_bind_int64(_handle.get(), parameter, value));
}

void Statement::bind(int parameter, double value) {
  _database._check(sqlite3_bind_double(_handle.get(), parameter, value));
}

void Statement::bind(int parameter, std::string_view text) {
  const auto bind = [&](std::string_view bytes, sqlite3_destructor_type keeping) {
    _database._check(sqlite3_bind_text64(_handle.get(), parameter, bytes.data(), bytes.size(), keeping, SQLITE_UTF8));
  };
  // The empty text has an address, too; without one it would be null.
  if (text.empty()) return bind(std::string_view(""), nullptr);
  if (is_utf8(text)) return bind(text, nullptr);
  bind(as_utf8(text), SQLITE_TRANSIENT);
}

void Statement::bind_null(int parameter) {
  _database._check(sqlite3_bind_null(_handle.get(), parameter));
}

void Statement::run() {
  const int status = sqlite3_step(_handle.get());
  sqlite3_reset(_handle.get());
  _database._check(status);
}

}  // namespace colx::table
