#include "FileNameParser.h"

#include <QByteArray>

#include <iostream>
#include <string>

namespace
{
std::string column(const std::optional<int> &number)
{
    return number ? std::to_string(*number) : std::string();
}
} // namespace

/// For each line of standard input: title, year, season and episode, separated by tabs.
int main()
{
    for (std::string line; std::getline(std::cin, line);) {
        const VideoFileComponents said = parseVideoName(QString::fromStdString(line));
        QString title = said.title;
        title.replace(QLatin1Char('\t'), QLatin1Char(' '));
        std::cout << title.toStdString() << '\t' << column(said.year) << '\t' << column(said.season) << '\t'
                  << column(said.episode) << '\n';
    }
    return 0;
}
