#pragma once
#include <QByteArray>
#include <QSet>
#include <QString>

/// The texts in the program's own sources.
struct SourceTexts
{
    QSet<QString> shown;    // what people see: keys of the translations
    QSet<QString> literals; // every text literal and scene text, for finding translations that nothing uses

    void add(const SourceTexts &other);
};

/// Of C++: shown are the literals handed to a function called "localize" or alike, and all words with a
/// "%@" or a “, which only sentences for people have.
SourceTexts textsOfCode(const QString &code);
/// Of a scene: shown is every text not marked as untranslatable.
SourceTexts textsOfScene(const QByteArray &scene);
/// Of the rooms and scenes below a source tree.
SourceTexts textsOfTree(const QString &sourceTree);
