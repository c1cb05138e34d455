#pragma once

struct sqlite3;

namespace kelvora::jetFunctions {

// Registers on one connection what the translated dialect calls: "like" with the
// program's wildcards (and a refusing three-argument form, as there is no ESCAPE),
// len, lcase, ucase, trim, left, right, mid counted in characters, madeof, and the French
// case-insensitive collation. Returns SQLite's result code (SQLITE_OK on success).
int install(sqlite3 *db);

} // namespace kelvora::jetFunctions
