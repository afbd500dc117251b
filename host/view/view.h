// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_VIEW_H
#define HOST_VIEW_VIEW_H

#include <memory>
#include <optional>
#include <unordered_map>

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVector>

#include "host/item/item.h"
#include "host/view/area_selection.h"
#include "host/view/controls.h"
#include "host/view/picture_contents.h"
#include "host/view/window/frame_budget.h"
#include "host/view/window/late_clear.h"
#include "host/view/window/refinement.h"

namespace host {

class MenuTree;
class Window;

/// A scene object of the module with this program behind it: it holds the items that the object's
/// GLWs show and hands them the passes, and it paints the text over them. Derived classes decide
/// what is shown and where.
///
/// The module finds the slots with capital letters by their names. Owned by its maker; it takes its
/// scene object out of the window and deletes it.
class View : public QObject {
    Q_OBJECT
public:
    ~View() override;

    QObject *scene() const { return scene_; }
    /// The scene object as a drawing object: what fills the window.
    GLW *mainGLW() const { return static_cast<GLW *>(scene_.data()); }
    /// Lets the main item be looked at from a side.
    void lookFrom(Steering::Side side);
    const Display &display() const { return display_; }
    void setDisplay(const Display &display);

    /// The camera of the main item, if that stands in three dimensions and is shown.
    std::optional<GL::Camera> camera() const;
    /// Lets what is shown from now on be looked at first from where @p camera looks, whole.
    void setLook(const GL::Camera &camera) { look_ = camera; }
    /// The projection of what is shown, or else of what will be.
    bool isOrthographic() const;
    /// The file's axis that points up in what is shown from now on; nothing: as its format has it.
    void setUp(std::optional<FileAxes::Axis> up) { up_ = up; }
    /// The planes that cut what is shown from now on.
    void setSection(const QVector<SectionRequest> &planes) { section_ = planes; }
    void setOrthographic(bool on) { orthographic_ = on; } ///< Of what is shown from now on.

    /// Reads the file @p path again, all if that is empty; who looked at it goes on looking so.
    virtual void readAgain(const QString &path) = 0;
    /// Leaves the tool that is active. Returns whether there was one.
    virtual bool leaveTool() = 0;

    void fitTurn(); ///< Lets every item be whole from all around, at once.

    Item *item(GLW *glw) const; ///< Null if the GLW shows nothing yet.

    /// Takes the view off the window, with its keys, or puts it back; it keeps all that it holds.
    virtual void setShown(bool on);

    /// All bindings that apply here, the window's own included.
    virtual QList<QAction *> bindings() const;
    /// The kinds of what is shown, bits of ContentBit; of what @p glw alone shows if not null.
    int contents(GLW *glw = nullptr) const;
    bool showsBindings() const { return showsBindings_; }
    void showBindings(bool on);

    /// Whether all that is to be shown is there to be drawn.
    virtual bool isSettled() const = 0;
    /// The reason why nothing could be shown; empty if there is none.
    virtual QString fault() const { return {}; }
    /// What a script should hear of what is shown: files that are missing in it, and why.
    virtual QStringList remarks() const { return {}; }
    /// A name for the window's title and for pictures; may be empty.
    virtual QString title() const = 0;

    bool eventFilter(QObject *object, QEvent *event) override;

    /// What the window shows, as objects of a picture. Holds until the view changes.
    /// The list of bindings and the frame rate are left out, and so are names, counts, axes, scale
    /// bar and measures unless @p overlays are wanted.
    PictureContents pictured(bool transparent, bool overlays = true);

    /// Asks for one frame in a little while, of what goes on in the background.
    void changedSoon();

    /// Whether no frame comes by itself any more: what is shown is smoothed, and nothing goes on.
    virtual bool isQuiet() const;

signals:
    void titleChanged();
    /// The whole frame is painted and not yet swapped: its pixels can be read. The GL context is
    /// current.
    void framePainted();
    /// A person asks for what the whole program offers; @p tree takes its entries.
    void menuOpening(host::MenuTree *tree);

public slots:
    void Init(GLW *glw);
    void Pick3D(GLW *glw);
    void Pick2D(GLW *glw);
    virtual void Draw3D(GLW *glw);
    virtual void Draw2D(GLW *glw);
    void PaintForeground(GLW *glw, QPainter *painter);
    void InitContextMenuTree(GLW *glw, QObject *tree);

    void NextUp(GLW *glw); ///< Lets the next axis of the file point up.
    void ToggleLighting();
    void ToggleReducing(); ///< Whether large models show less while they move.
    void NextMode();       ///< Draws surfaces in the next way.
    void WiderPoints();
    void ThinnerPoints();
    void ToggleBackdrop();
    void ToggleHover();
    void ShowMenu(); ///< The menu as the right button opens it, for who has a keyboard alone.

protected:
    /// Makes a scene object of @p className in @p window, which outlives the view. The constructor
    /// of a derived class ends with wire().
    View(Window &window, const char *className, bool single);
    /// Connects the scene's signals to the slots of the whole object, by their names.
    void wire();

    Window &window() const { return window_; }
    Controls &controls() { return *controls_; }

    /// Gives @p glw something to show; what it showed before is released. Null shows nothing, and
    /// must be set before a GLW is deleted ahead of the view.
    /// Asks for no frame: many may come at once.
    void setItem(GLW *glw, std::shared_ptr<Item> item);
    /// Takes away what @p glw shows, to be shown elsewhere. Returns null if there is nothing.
    std::shared_ptr<Item> takeItem(GLW *glw);

    /// Lets the item of @p glw forget what the pointer was on: its pick passes no longer come.
    void forgetPointer(GLW *glw);

    /// Lets the item of @p glw move on to this frame. Expects to run once a frame, after the
    /// camera's update and before picking.
    void advance(GLW *glw);

    /// Draws what @p glw shows in three dimensions, over its backdrop; what the pointer is on
    /// stands out in it if @p marked.
    void drawItem(GLW *glw, bool marked);
    void changed(); ///< Asks for a frame.
    /// What the pointer is on has changed, and nothing else: asks for a frame.
    virtual void markChanged() { changed(); }
    /// All that GL draws of this frame is drawn; text comes after it. Views whose main object is
    /// not the last to be drawn call it, and may say @p within which part of the window frames
    /// differ. Returns whether it is now as smooth as it gets.
    bool drawn(std::optional<QRect> within = {}) { return refinement_.finish(within); }
    Refinement &refinement() { return refinement_; }
    quint64 itemNumber(GLW *glw) const; ///< Which of the view's items it is; 0 for none.

    /// Binds a key that concerns the whole view: it is heard wherever the pointer is, in the window
    /// and outside. The scene's own bindings are heard only where the pointer is on the scene.
    QAction *bindViewKey(const QString &key, const char *name, const QString &text,
                         QObject *receiver, const char *slot);
    void askMenu(GLW *glw); ///< Opens the menu for @p glw.

    /// Draws what @p glw shows in three dimensions: its item, if not told otherwise.
    virtual void drawContents(GLW *glw, const Display &display);
    /// Whether what the item of @p glw shows is seen at a place in its pixels, y upwards.
    virtual bool showsItemAt(const GLW *, const QPointF &) const { return true; }
    /// Whether it draws all of the window's pixels: then the window clears nothing, and Draw3D()
    /// clears the depths. Who overrides that does so itself.
    virtual bool fillsWindow() const { return false; }
    void endSparing() { lateClear_.end(); } ///< In the first pass of a tick.
    /// Whether @p glw is advanced by its pick pass. Views whose scene tells of each frame say no.
    virtual bool advancesInPick() const { return true; }
    /// Adds what a picture of the view shows: its main item and the text over it, if not told
    /// otherwise.
    virtual void fillPicture(PictureContents &contents);
    void addTextTo(PictureContents &contents); ///< What is painted over the items.
    /// Whether the picture that is being listed shows more than the items.
    bool picturesOverlays() const { return display_.overlays; }
    /// Whether what is painted is a picture, of which what a person is about to do is no part.
    bool paintsPicture() const { return paintsPicture_; }
    /// The pointer over @p glw while nothing is dragged and it is to be marked, in its pixels, y
    /// upwards.
    std::optional<QPointF> hoverPointer(const GLW *glw) const;
    /// Paints over everything, in the window's pixels, y downwards.
    virtual void paintText(GLW *scene, QPainter *painter) = 0;
    /// The passes that took it are over. The rectangle is in window pixels, y upwards.
    virtual void areaSelected(const QRectF &) {}
    /// Whether the items take what the rectangle holds, and not the view.
    virtual bool itemsSelect() const { return true; }

    /// A click, which a tool that is active takes before all others; @p at counts in the pixels of
    /// @p glw, y upwards. Returns whether one did.
    virtual bool toolClicked(GLW *, const QPointF &) { return false; }
    /// A click that the item of @p glw has no use for.
    virtual void clicked(GLW *, const QPointF &, Qt::KeyboardModifiers) {}
    /// What keys mean that concern one object: the menu's, for example.
    virtual GLW *keyTarget() const { return mainGLW(); }
    /// Pixels at the edges of @p glw over which this view lays something.
    virtual QMarginsF covered(GLW *) const { return {}; }
    /// Adds the entries for @p glw.
    virtual void fillMenu(GLW *glw, MenuTree *tree);

private:
    struct Slot {
        std::shared_ptr<Item> item;
        quint64 number = 0;             // each item that comes has another
        std::optional<double> advanced; // when it last was
        QVector<double> picked;         // pointer and camera of the last picking; empty: to be done
    };

    void begin(GLW *glw, Item *item) const;
    void cut(Item *item) const;
    void turnLike(GLW *glw, const Item *before, Item *item) const;
    void standOn(GLW *glw, FileAxes::Axis up);
    void fillUpMenu(GLW *glw, MenuTree *tree);
    void fillModeMenu(MenuTree *tree);
    void bindDisplay();
    void bindPoints();
    void scalePoints(double factor);
    bool scrollBindings(QEvent *event);
    void paintList(QPainter *painter);
    void paintOver(GLW *glw, QPainter *painter);
    bool pickIsDue(GLW *glw, Slot &slot, const std::optional<QPointF> &pointer);
    void shadeFrameRate(const GLW *glw) const;
    void endArea();
    void timeFrame();

    Window &window_;
    QPointer<QObject> scene_;
    Controls *controls_ = nullptr;
    Display display_;
    bool orthographic_ = false;
    std::optional<FileAxes::Axis> up_;
    QVector<SectionRequest> section_;
    std::optional<GL::Camera> look_;
    bool paintsPicture_ = false;
    bool showsBindings_ = false;
    int firstBinding_ = 0; // the row of the list that comes first
    QList<QPointer<QAction>> viewKeys_;
    std::unordered_map<GLW *, Slot> slots_;
    quint64 items_ = 0; // that came until now
    QPointer<GLW> menuFor_;
    AreaSelection area_;
    FrameBudget budget_{this};
    LateClear lateClear_;
    Refinement refinement_;
    double passed_ = 0;    // the clock's time at the last pass
    double frameTook_ = 0; // seconds, of the last frame, until it was on the screen
};

} // namespace host

#endif
