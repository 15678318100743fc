#pragma once

class QObject;
class QWidget;

/// Connects what a scene names in dynamic properties of its widgets to the scene's controller, in one pass:
/// - `action`: the selector ("download:") sent when a button is clicked, Return is pressed in a field, an
/// item
///   of a combo box is chosen, or a QAction is triggered (by Escape only where no list or menu is open, which
///   is closed first); `doubleAction`: the selector sent on a double click (or Return) in a table;
///   `endEditingAction`: the selector sent when an edit of a field ends, by Return or by going elsewhere. The
///   controller answers "download:" by an invokable method download(QObject *sender).
/// - `itemTags`, `itemObjects`: what a combo box's items stand for, in their order: integers, or texts.
/// - `bindValue`, `bindSelectedTag`, `bindSelectedObject`, `bindEnabled`, `bindHidden`, `bindTitle`:
///   "[!]SOURCE[|Transformer]", where SOURCE is a property of the controller or "defaults.KEY".
/// A selector or property that the controller does not have is a fatal fault, and so is a tag that is no
/// integer. Main thread.
void connectScene(QWidget &root, QObject &controller);
