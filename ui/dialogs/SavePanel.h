#pragma once
#include <QString>
#include <QUrl>
#include <functional>
#include <memory>
#include <optional>

class SaveDialog;
namespace ui
{
class Window;
}

/// The answer of a save sheet; the numbers are the platform's.
enum class ModalResponse
{
    Cancel = 0,
    OK = 1
};

/// A save sheet. A plain object: it may be made on any thread and builds its dialog when it is shown, on the
/// main thread. It never asks whether to replace a file, because an existing file is an error of the move.
class SavePanel final : public std::enable_shared_from_this<SavePanel>
{
public:
    SavePanel();
    /// For tests: called for every panel, on the thread that makes it.
    static void setObserver(std::function<void()> observer);

    QString title;
    /// The folder to open, or a file in it. Without one that exists: the folder used last, else the Videos
    /// folder, else the home folder; never the working directory.
    std::optional<QUrl> directoryURL;
    QString nameFieldStringValue;
    bool extensionHidden = true;
    bool canSelectHiddenExtension = false;

    /// Shows the sheet on `window` and returns at once. `completion` is called once on the main thread with
    /// the answer, or never when the window is destroyed first. The panel, which must be held by a shared
    /// pointer, keeps itself alive until then. A window shows one sheet at a time; others
    /// wait, and one that an answer begins goes before them.
    void beginSheetModalForWindow(ui::Window *window, const std::function<void(ModalResponse)> &completion);
    /// The chosen file; none before OK.
    std::optional<QUrl> URL() const { return m_url; }

private:
    void showSheet(ui::Window *window, const std::function<void(ModalResponse)> &completion);
    ModalResponse takeAnswer(const SaveDialog &dialog, int result);

    std::optional<QUrl> m_url;
};
