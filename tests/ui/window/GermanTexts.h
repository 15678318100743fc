#pragma once
#include <base/Bundle.h>
#include <tests/support/Sandbox.h>

#include <QHash>

/// For its lifetime the main bundle has a German strings table with these texts, and the person reads German.
class GermanTexts final
{
public:
    GermanTexts(const Sandbox &sandbox, const QHash<QString, QString> &texts)
        : m_earlierFolder(Bundle::main().folder())
    {
        QString list = QStringLiteral("<plist version=\"1.0\"><dict>");
        for (auto text = texts.cbegin(); text != texts.cend(); ++text)
            list += QStringLiteral("<key>%1</key><string>%2</string>")
                        .arg(text.key().toHtmlEscaped(), text.value().toHtmlEscaped());
        list += QStringLiteral("</dict></plist>");
        sandbox.writeFile(QStringLiteral("german/de.lproj/Localizable.strings"), list.toUtf8());
        Bundle::setMainFolder(sandbox.path(QStringLiteral("german")));
        Bundle::main().setPreferredLocalizations({QStringLiteral("de")});
    }
    ~GermanTexts() { Bundle::setMainFolder(m_earlierFolder); }

private:
    QString m_earlierFolder;
};
