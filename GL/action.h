// SPDX-License-Identifier: MIT
#ifndef GL_ACTION_H
#define GL_ACTION_H

#include <initializer_list>
#include <limits>

#include <QAction>
#include <QKeySequence>

#include "GL/export.h"
#include "GL/glw.h"
#include "GL/mouse.h"

Q_DECLARE_METATYPE(Mouse *)

/// A key bound to a receiver's slot.
///
/// The slot chooses by its arguments which `triggered` overload it hears. Those without a state are
/// emitted for presses only, auto-repeats included; those with a state alone for presses and
/// releases, without repeats; those with state and repeat for everything. Owned by its Qt parent;
/// it also dies with its receiver.
class GLWINDOW_EXPORT KeyAction : public QAction {
    Q_OBJECT
    Q_PROPERTY(QKeySequence key READ key WRITE setKey)

public:
    QKeySequence _key;

    /// The object name is @p name, read as Latin-1, unless it is null.
    KeyAction(QObject *parent, const char *name);

    QKeySequence key() const { return _key; }
    void setKey(const QKeySequence &key) { _key = key; }

    /// Binds the action to @p obj's @p slot (in `SLOT()` form) through the first `triggered`
    /// overload that fits it. Returns false if an argument is null or none fits; in the latter case
    /// the action still dies with @p obj.
    bool connect(QObject *obj, const char *slot);

    /// Returns 1 if @p k is the bound key sequence, else 0.
    int match(const QKeySequence &k) const { return k == _key ? 1 : 0; }

    /// The first enabled key action bound to @p key, a Qt key code or-ed with modifier bits, or
    /// null. Other kinds of action are passed over.
    static KeyAction *find(const QList<QAction *> &actions, int key);

    /// Emits the signals for a press (@p state) or release. Stops if a slot deletes the action,
    /// @p glw or the window of @p glw.
    void activate(GLW *glw, bool state, bool repeat);

Q_SIGNALS:
    void triggered();
    void triggered(bool state);
    void triggered(bool state, bool repeat);
    void triggered(GLW *glw);
    void triggered(GLW *glw, bool state);
    void triggered(GLW *glw, bool state, bool repeat);
};

/// Mouse buttons, wheel steps, double clicks and keyboard modifiers bound to a receiver's slot.
///
/// A binding word holds Qt's mouse buttons in bits 0 to 7 (0x8 and 0x10 also stand for a wheel step
/// up and down), 0x100 for a double click, and Qt's keyboard modifiers in bits 25 to 29. Bits of
/// the mask are ignored unless the binding sets them. Of several bindings that match, the one with
/// the most bits wins. Owned by its Qt parent; it also dies with its receiver.
class GLWINDOW_EXPORT MouseAction : public QAction {
    Q_OBJECT
    Q_PROPERTY(uint binding READ binding WRITE setBinding)
    Q_PROPERTY(uint mask READ mask WRITE setMask)

public:
    quint32 _binding = 0;
    quint32 _mask = 0;

    /// The object name is @p name, read as Latin-1, unless it is null.
    MouseAction(QObject *parent, const char *name);

    quint32 binding() const { return _binding; }
    void setBinding(quint32 binding) { _binding = binding; }
    void setBinding(quint32 binding, quint32 mask);
    quint32 mask() const { return _mask; }
    void setMask(quint32 mask) { _mask = mask; }

    /// As KeyAction::connect().
    bool connect(QObject *obj, const char *slot);

    /// The number of bits in the binding if @p word fits it under the mask, else -1.
    int match(quint32 word) const;

    /// The best enabled mouse action for the record, the earlier one on a tie, or null. A press is
    /// matched with the buttons and modifiers held now, a release with those held before it.
    static MouseAction *find(const QList<QAction *> &actions, const Mouse &mouse, bool press);

    /// Emits the signals: those without a state for a press only. @p mouse is passed on as it
    /// stands; slots may read it during the call only. Stops if a slot deletes the action, @p glw
    /// or the window of @p glw.
    void activate(GLW *glw, Mouse &mouse, bool state);

Q_SIGNALS:
    void triggered();
    void triggered(bool state);
    void triggered(Mouse *mouse);
    void triggered(Mouse *mouse, bool state);
    void triggered(GLW *glw);
    void triggered(GLW *glw, bool state);
};

/// Connects the first of @p overloads (in `SIGNAL()` form) whose arguments fit @p obj's @p slot (in
/// `SLOT()` form) to it; @p action dies with @p obj. Returns false if an argument is null or none
/// fits; in the latter case the action still dies with @p obj.
inline bool connectFirst(QAction *action, std::initializer_list<const char *> overloads,
                         QObject *obj, const char *slot)
{
    if (!action || !obj || !slot)
        return false;
    QObject::connect(obj, SIGNAL(destroyed()), action, SLOT(deleteLater()));
    // Qt compares the arguments as text: both sides are brought to its normal spelling.
    const QByteArray wanted = QMetaObject::normalizedSignature(slot);
    if (!wanted.contains('(')) // Qt would look for it beyond the text
        return false;
    for (const char *candidate : overloads) {
        const QByteArray signal = QMetaObject::normalizedSignature(candidate);
        if (QMetaObject::checkConnectArgs(signal, wanted))
            return bool(QObject::connect(action, signal, obj, wanted));
    }
    return false;
}

/// Whether bit @p n (0 to 31) of @p v is set; false for a bit that @p v does not have.
inline bool bit(int n, unsigned long v)
{
    return n >= 0 && n < std::numeric_limits<unsigned long>::digits && ((v >> n) & 1);
}

/// The number of set bits among bits 0 to @p n - 1 of @p v; 0 for @p n < 1.
inline int bit_count(unsigned long v, int n)
{
    int count = 0;
    for (int i = 0; i < n && v; ++i, v >>= 1)
        count += bit(0, v);
    return count;
}

#endif
