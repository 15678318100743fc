#pragma once

namespace SQLite
{
class Database;
}

/// Keeps from running by itself what a made-up file may hold: triggers, views and the functions that its
/// tables name. Call before anything is read.
void distrust(SQLite::Database &database);

/// Takes away whatever a made-up file could use against its reader, sizes without measure included. Call
/// before anything is read. Throws SQLite::Exception.
void harden(SQLite::Database &database);

/// Throws SQLite::Exception unless the tables that searches read are, to the letter, those the program makes.
/// A column that is computed, or another program's table in place of one of ours, could keep a single step of
/// a search busy for hours, where no limit of time reaches.
void verifySchema(SQLite::Database &database);
