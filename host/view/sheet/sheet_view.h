// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_SHEET_SHEET_VIEW_H
#define HOST_VIEW_SHEET_SHEET_VIEW_H

#include <QHash>
#include <QSet>
#include <QTimer>

#include "host/read/read_queue.h"
#include "host/view/sheet/sheet_bar.h"
#include "host/view/sheet/sheet_entry.h"
#include "host/view/sheet/sheet_grid.h"
#include "host/view/sheet/sheet_scroll.h"
#include "host/view/sheet/sheet_search.h"
#include "host/view/sheet/tile_painter.h"
#include "host/view/sheet/tile_pictures.h"
#include "host/view/view.h"

class QWheelEvent;

namespace host {

/// What a sheet lends: an item, and how it was left.
struct Loan {
    std::shared_ptr<Item> item;
    ItemState state;
};

/// Many files side by side: a tile for each, with its own camera. Tiles have a least width; a sheet
/// that is larger than its window is scrolled. Files are read in the background, those in view
/// first and then those a window above and below; a file that cannot be read keeps its tile, with
/// the reason in it. The module holds tiles for what is near and for some hundreds seen before;
/// order, selection and what is hidden are the sheet's, for all files alike.
///
/// Memory: the items together hold at most memoryBudget() bytes in arrays and GL buffers. Beyond
/// half of it, tiles out of view give theirs back, the one seen longest ago first, and are read
/// again when they come into view; what passes the whole even so is refused, with a message in its
/// tile, and read again when there is room. Contents on their way from the readers and those that
/// the items hold stay within memoryBudget() too, so that nothing larger arrives in the first
/// place.
class SheetView : public View {
    Q_OBJECT
public:
    /// @p name is what the sheet is called, such as its folder. @p paths are files and folders;
    /// where there are folders, the tiles come when those were looked through. @p queue outlives
    /// the sheet.
    SheetView(Window &window, ReadQueue &queue, const QString &name, const QStringList &paths);
    ~SheetView() override;

    TilePictures &pictures() { return pictures_; } ///< Of its tiles, beside their memory.

    /// A quarter of the machine's memory, and not more than 2 GiB.
    static quint64 memoryBudget();
    void setMemoryBudget(quint64 bytes);

    bool isSettled() const override;
    bool isQuiet() const override { return View::isQuiet() && !hovering_.isPending(); }
    QString fault() const override; ///< Where not one file is there that can be read.
    QStringList remarks() const override;
    void readAgain(const QString &path) override;
    QString title() const override;
    const SheetEntries &entries() const { return entries_; }
    GLW *tile(int id) const { return tiles_.value(id); } ///< Null if there is none now.
    const QList<int> &inView() const { return inView_; } ///< In the order in which one reads.
    double offset() const { return scroll_.offset(); }   ///< Pixels that are scrolled away.

    /// The least width of a tile, in usual pixels; what is not positive stands for the usual one.
    void setTileSize(double usual);
    double tileSize() const { return tileSize_; }
    /// How many tiles the module holds at most, if not more are near; some hundreds unless set.
    void setMostTiles(int count) { mostTiles_ = count; }
    /// Whether its camera is moved with others; plots have none.
    bool isLinked(int id) const;

    /// Gives the item of a file away, to be shown in another view, and takes back what it lent
    /// before. Empty if the file has no item here. Expects that the other view is gone before
    /// takeBack(), which puts the item back as it was left here.
    Loan lend(const QString &path);
    void takeBack();
    /// What the tile of a file shows, shared; null if that is no model, or is not there.
    MeshPtr meshOf(const QString &path) const;

    void Draw3D(GLW *glw) override;
    void Draw2D(GLW *glw) override;

    bool leaveTool() override; ///< Ends a search.
    void setShown(bool on) override;
    QList<QAction *> bindings() const override;
    bool eventFilter(QObject *object, QEvent *event) override;

public slots:
    void Update(GLW *glw); ///< Called for every visible tile in every pass.
    void DrawBG(GLW *glw); ///< Called before the tiles are drawn.
    void DrawFG(GLW *glw); ///< Called after them.

    void SelectAll();   ///< All that are shown, in view or not, or none if all were.
    void ToggleShown(); ///< Only the selected tiles, or all of them again.
    void Find();        ///< Lets a person write what the names of the tiles are to hold.
    void PageUp() { scrollPages(-1); }
    void PageDown() { scrollPages(1); }
    void ScrollToStart() { glideTo(0); }
    void ScrollToEnd() { glideTo(scroll_.largest()); }
    void LargerTiles() { resizeTiles(1); }
    void SmallerTiles() { resizeTiles(-1); }
    void OpenTile(GLW *glw, bool pressed);
    void GapMenu(GLW *glw, bool pressed);
    void AdaptTo(int width, int height);
    void SortByName() { sortBy(SheetOrder::Name); }
    void SortBySize() { sortBy(SheetOrder::Size); }
    void SortByCount() { sortBy(SheetOrder::Count); }
    void ToggleLink(); ///< The cameras of the selected tiles, or of all if fewer than two are.
    void WiderSpacing() { changeSpacing(2); }
    void NarrowerSpacing() { changeSpacing(-2); }
    void ResetAll();         ///< Every camera back to its first view.
    void ChooseNear();       ///< Selects the tile beside the chosen one, as the key's action says.
    void ChooseNext();       ///< Selects the next in reading order.
    void ChoosePrevious();   ///< Selects the one before.
    void OpenChosen();       ///< Opens it alone.
    void SelectionChanged(); ///< The module changed the tiles that it holds.
    void CompareSelected();  ///< Two of them.

signals:
    void filesFound(const QStringList &files); ///< The folders were looked through.
    /// A person wants a picture of @p crop, in the window's pixels, y downwards.
    void pictureAsked(const QString &name, const QRect &crop);
    void openAsked(const QString &path); ///< A person wants to see a file alone.
    void compareAsked(const QString &first, const QString &second); ///< Or two of them together.
    void tileSizeChosen(double usual);                              ///< As setTileSize() takes it.

protected:
    bool fillsWindow() const override { return !inView_.isEmpty(); }
    bool advancesInPick() const override { return false; }
    void markChanged() override;
    void fillPicture(PictureContents &contents) override;
    void paintText(GLW *scene, QPainter *painter) override;
    void clicked(GLW *glw, const QPointF &, Qt::KeyboardModifiers) override { passOn(glw, false); }

    bool itemsSelect() const override { return false; }
    void areaSelected(const QRectF &area) override;
    void fillMenu(GLW *glw, MenuTree *tree) override;
    GLW *keyTarget() const override;

private:
    using State = SheetEntry::State;

    void open(const QStringList &paths);
    void addTiles(const QStringList &files);
    void takeList(const FileList &list);
    void bindKeys();
    void bindChoosing();
    int chosen() const;
    void choose(int index);
    void chooseNext(int step);
    void connectQueue();
    SheetEntry *entryOfJob(int job, int *id = nullptr);
    int idOf(const QString &path) const;
    void read(int id);
    void show(int id, const std::shared_ptr<Item> &made);
    void take(int id, const std::shared_ptr<Item> &made);
    void fail(int id, const QString &reason, quint64 needed);
    void release(int id);
    GLW *tileFor(int id);
    void dropTile(int id);
    void listShown();
    void arrange();
    void showTiles();
    void setVisible(int id, bool visible);
    bool isIn(int id, const SheetGrid::Range &range) const;
    bool isLent(int id) const;
    void comeNear(int id);
    void readForCount();
    void applyCounts();
    void forgetFar();
    void layOut();
    void placeCells();
    void setCramped(bool cramped);
    int spacingIn(double extent) const;
    double tileWidth() const;
    void glide();
    void scrollTo(double offset);
    void glideTo(double offset);
    void scrollPages(int pages);
    void reveal(int id);
    void resizeTiles(double steps);
    bool wheel(const QWheelEvent &event);
    void searched();
    void bringPointerToChosen();
    void bindScrolling();
    void pictureOf(int id);
    void countHeld();
    quint64 makeRoom();
    void readRefused(quint64 held);
    quint64 bytesOf(int id) const;
    void hover(const GLW *glw);
    int pointed() const;
    QColor ground() const;
    QByteArray keyOf(GLW *glw) const;
    void drawMark();
    void sortBy(SheetOrder order);
    void applyOrder();
    void changeSpacing(int pixels);
    QList<int> selected() const;
    void select(const QList<int> &ids);
    void followLeader(GLW *glw);
    bool isSpatial(GLW *glw) const;
    bool isSeen(int id) const;
    QList<int> seen() const;
    QList<int> targetsOf(const GLW *glw) const;
    void fit(const QList<int> &ids);
    void hide(const QList<int> &ids);
    void remove(const QList<int> &ids);
    void addCompareEntry(MenuTree *tree);
    void passOn(GLW *glw, bool state);
    QString progress() const;
    void paintTiles(QPainter *painter);
    void paintBottomNote(QPainter *painter, const QRectF &bounds);

    QString name_;
    QString notice_;
    QString hint_; // until something else is selected
    SheetEntries entries_;
    QHash<int, GLW *> tiles_; // those that the module holds
    QSet<int> selected_;
    QList<int> inOrder_;    // all files
    QList<int> shown_;      // of these, what is neither hidden nor filtered away
    QHash<int, int> index_; // in shown_, by id
    QList<int> inView_;     // of these
    SheetGrid::Range near_; // in shown_: what is in view or will be soon
    SheetGrid grid_;
    SheetScroll scroll_;
    SheetSearch search_;
    std::unique_ptr<SheetBar> bar_;
    double tileSize_ = 0; // usual pixels
    int mostTiles_ = 512;
    double firstTop_ = 0; // in the sheet, of the first row in view
    int header_ = 0;      // of the tiles in view, in pixels
    QList<QAction *> hints_;
    bool chosenByKeys_ = false; // and no mouse was moved since then
    QHash<int, int> jobs_;      // of the queue, to ids
    int list_ = 0;              // the job that looks through folders; 0 if none does
    QSet<int> linked_;
    int leader_ = -1;                // the linked tile whose camera was moved last
    std::optional<GL::Camera> pose_; // its
    QList<int> beforePress_;         // selected before the left button went down
    int lent_ = 0;
    std::shared_ptr<Item> lentItem_;
    QPointer<QObject> gaps_; // behind the tiles: hears the pointer where there is none
    int hovered_ = -1;
    int spacing_ = 0;      // as the person wants it, where there is room
    bool cramped_ = false; // the tiles have no room for a drawing
    quint64 passes_ = 0;
    quint64 budget_ = memoryBudget();
    quint64 held_ = 0;    // bytes, by all items, as last counted
    QTimer refusedAgain_; // runs out when memory may be there for what was refused
    SheetOrder order_ = SheetOrder::Name;
    bool sorted_ = false;
    bool countsDue_ = false; // files are being read whose counts the order waits for
    bool reversed_ = false;
    TilePainter painter_;
    TilePictures pictures_;
    int copied_ = 0; // the last tile in the pass that is copied
    FrameBudget hovering_{this, 70, 20};
    ReadQueue &queue_;
};

} // namespace host

#endif
