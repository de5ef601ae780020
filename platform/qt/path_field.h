#pragma once

#include <QLineEdit>

/// A field for the path of a file or directory. Without focus a path that doesn't fit is shortened in the
/// middle; the tooltip has it whole. A disabled field shows the tooltip that it was given.
class PathField : public QLineEdit {
    Q_OBJECT

public:
    enum class Drop { None, File };

    /// With `Drop::File` it takes one regular file of this machine that is dropped on it, while it is
    /// enabled, and an empty field says so. A window that takes the drops for its fields switches theirs off
    /// by `setAcceptDrops`.
    explicit PathField(Drop drop, QWidget* parent = nullptr);

    void SetPath(const std::wstring& path);
    std::wstring Path() const;

    /// Outlines the field as the target of a drag, also of one that a window takes in its place.
    void SetDropHighlight(bool on);

signals:
    /// A file was dropped. Sent after the drop has ended, so that a receiver may run dialogs. The text is
    /// unchanged.
    void FileDropped(const std::wstring& path);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    QRect TextRect(const QStyleOptionFrame& frame) const;
    void PaintElided(const QStyleOptionFrame& frame);
    void PaintDropHighlight();
    void ShowHint();

    Drop drop;
    bool isDropTarget = false;
};
