// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_SHEET_SHEET_SEARCH_H
#define HOST_VIEW_SHEET_SHEET_SEARCH_H

#include <QLineEdit>
#include <QPointer>
#include <QStringList>

#include "host/item/display.h"

namespace host {

/// The line over a sheet in which a person writes what the names of the tiles are to hold. It is
/// there from open() until close(), in the lower right corner of the widget that it lies over.
class SheetSearch : public QObject {
    Q_OBJECT
public:
    explicit SheetSearch(QWidget *over);
    ~SheetSearch() override;

    bool isOpen() const { return open_; }
    void open();  ///< The next letters go there.
    void close(); ///< Forgets what was written; the keys are those of the widget again.
    /// Hides the line and keeps all of it, or shows it again if it is open.
    void setShown(bool on);
    void setTheme(const Theme &theme);
    double height() const; ///< Of the window's lower edge that it covers; 0 while it is closed.

    bool isEmpty() const { return words_.isEmpty(); }
    /// Whether @p name holds every word that was written, in any order; capitals do not matter.
    bool matches(const QString &name) const;

    bool eventFilter(QObject *object, QEvent *event) override;

signals:
    void changed(); ///< Other names match.
    void closed();

private:
    void place();
    bool takesKey(const QObject *object, QEvent *event);

    QPointer<QWidget> over_;
    QPointer<QLineEdit> line_; // a child of that
    QStringList words_;
    bool open_ = false;
};

} // namespace host

#endif
