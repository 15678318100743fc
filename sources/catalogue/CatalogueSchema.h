#pragma once

namespace SQLite
{
class Database;
}

/// The tables of a catalogue. Files of another version and files whose tables were not made by exactly these
/// statements are refused: each change of a statement needs a new version.
namespace CatalogueSchema
{
/// Makes the tables in an empty file. Throws SQLite::Exception, as the functions below do.
void create(SQLite::Database &database);

enum class Owner
{
    Ours,
    OtherVersion,
    OtherProgram
};
/// What the file's header says about the program that made it.
Owner ownerOf(SQLite::Database &database);

/// Throws unless the tables that searches read are, to the letter, those the program makes. A column that is
/// computed, or another program's table in place of one of ours, could keep a single step of a search busy
/// for hours, where no limit of time reaches.
void verify(SQLite::Database &database);
} // namespace CatalogueSchema
