#pragma once

namespace SQLite
{
class Database;
}

/// Disables what a forged file could run by itself: triggers, views and the functions in its table
/// definitions. Call before the first read.
void distrust(SQLite::Database &database);

/// Limits what a forged file could do to its reader, sizes included. Call before the first read. Throws
/// SQLite::Exception.
void harden(SQLite::Database &database);

/// Throws SQLite::Exception unless the tables that searches read are, to the letter, those the program makes.
/// A column that is computed, or another program's table in place of one of ours, could keep a single step of
/// a search busy for hours, where no limit of time reaches.
void verifySchema(SQLite::Database &database);
