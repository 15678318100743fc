#pragma once
#include <QStringList>

/// The parsed command line.
struct CatalogueOptions
{
    QString path;     // of the catalogue
    QString language; // three letters; empty for none
    qint64 limit = 0; // 0 for all
    bool isQuiet = false;
    bool checks = false;
    QStringList arguments; // of the command
};

/// The commands of plovendix-catalogue. Each prints its answer on standard output and errors on standard
/// error, and returns the exit status.
namespace CatalogueCommands
{
inline constexpr int Success = 0;
inline constexpr int Failure = 1;
inline constexpr int Misuse = 2;
inline constexpr int Interrupted = 130;

int add(const CatalogueOptions &options);
int remove(const CatalogueOptions &options);
int list(const CatalogueOptions &options);
int search(const CatalogueOptions &options);
int stats(const CatalogueOptions &options);
int vacuum(const CatalogueOptions &options);
} // namespace CatalogueCommands
