#pragma once

#include <QAbstractListModel>
#include <QListView>
#include <QStringList>

/// A list of log lines that grows at its end, where the last one is always the selected one. It scrolls as
/// wide as the widest line. Selected lines can be copied, by Ctrl+C or the context menu.
class LogView : public QListView {
    Q_OBJECT

public:
    explicit LogView(QWidget* parent = nullptr);

    void Append(const QStringList& lines);
    QStringList Lines() const { return lineModel.lines; }

    /// The selected lines, in order, ended by "\n" but for a single one.
    QString SelectedText() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    class Model : public QAbstractListModel {
    public:
        int rowCount(const QModelIndex& parent = {}) const override;
        QVariant data(const QModelIndex& index, int role) const override;
        void Append(const QStringList& more);

        QStringList lines;
        QSize lineSize;  // of every line
    };

    void Widen(const QStringList& lines);
    void Copy();

    Model lineModel;
};
