#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QLocale>
#include <QMenu>
#include <QPushButton>
#include <QStringListModel>
#include <QToolButton>

namespace
{
using namespace Qt::StringLiterals;

constexpr int LanguageCount = 180;

QComboBox *languages()
{
    auto *box = new QComboBox;
    for (int number = 2; number < 2 + LanguageCount; ++number)
        box->addItem(QLocale::languageToString(QLocale::Language(number)));
    return box;
}

QToolButton *menuButton()
{
    auto *button = new QToolButton;
    auto *menu = new QMenu(button);
    for (const auto &text : {u"Open Video…"_s, u"Save As…"_s, u"Preferences…"_s, u"Check for Updates…"_s,
                             u"Website"_s, u"Send Feedback…"_s, u"Donate…"_s, u"About"_s, u"Quit"_s})
        menu->addAction(text);
    button->setMenu(menu);
    return button;
}

QWidget *panel()
{
    auto *frame = new QWidget;
    auto *rows = new QVBoxLayout(frame);
    for (const auto &text : {u"File"_s, u"Title"_s, u"Language"_s, u"Saved"_s, u"Downloads left"_s})
        rows->addWidget(new QLabel(text));
    rows->addWidget(new QPushButton(u"Show in folder"_s));
    rows->addWidget(new QPushButton(u"Download"_s));
    return frame;
}
} // namespace

/// The main window's widgets as the toolkit makes them, without a style, a service or a scene: the least that
/// such a window costs.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QWidget window;
    window.setWindowTitle(u"Plain window"_s);
    auto *layout = new QGridLayout(&window);
    layout->addWidget(menuButton(), 0, 0);
    layout->addWidget(new QLabel(window.windowTitle()), 0, 1);
    layout->addWidget(languages(), 0, 2);
    auto *field = new QLineEdit;
    field->setPlaceholderText(u"Search for a film or a show"_s);
    layout->addWidget(field, 1, 0, 1, 2);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(new QToolButton);
    buttons->addWidget(new QToolButton);
    layout->addLayout(buttons, 1, 2);
    auto *headline = new QLabel(u"Drop a video here"_s);
    headline->setAlignment(Qt::AlignCenter);
    layout->addWidget(headline, 2, 0, 1, 3);
    auto *hint = new QLabel(u"or type a title above"_s);
    hint->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    layout->addWidget(hint, 3, 0, 1, 3);
    auto *list = new QListView;
    list->setModel(new QStringListModel(list));
    layout->addWidget(list, 4, 0, 1, 3);
    QWidget *details = panel();
    layout->addWidget(details, 5, 0, 1, 3);
    list->hide();
    details->hide();
    window.resize(760, 640);
    window.show();
    return QApplication::exec();
}
