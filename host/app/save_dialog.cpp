// SPDX-License-Identifier: MIT
#include "host/app/save_dialog.h"

#include <algorithm>

#include <QCheckBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QSpinBox>

#include "host/capture/picture.h"

namespace host {

namespace {

constexpr int longestSide = 16384;

/// A size of the shape of another, given by its width.
class SizeRow : public QWidget {
public:
    SizeRow(const QSize &shown, const PictureChoice &proposal, QWidget *parent)
        : QWidget(parent), shown_(shown)
    {
        width_ = new QSpinBox(this);
        const int longer = std::max(shown.width(), shown.height());
        width_->setRange(1, int(qint64(longestSide) * shown.width() / longer));
        width_->setValue(proposal.size.width());
        width_->setSingleStep(shown.width());
        height_ = new QLabel(this);
        transparent_ = new QCheckBox(PictureChoice::tr("&Transparent background"), this);
        transparent_->setChecked(proposal.transparent);
        overlays_ = new QCheckBox(PictureChoice::tr("With &names, axes and scale"), this);
        overlays_->setChecked(proposal.overlays);
        auto *label = new QLabel(PictureChoice::tr("&Width:"), this);
        label->setBuddy(width_);
        auto *row = new QHBoxLayout(this);
        row->setContentsMargins(0, 0, 0, 0);
        for (QWidget *widget : {static_cast<QWidget *>(label), static_cast<QWidget *>(width_),
                                static_cast<QWidget *>(height_)})
            row->addWidget(widget);
        row->addStretch();
        row->addWidget(overlays_);
        row->addWidget(transparent_);
        connect(width_, qOverload<int>(&QSpinBox::valueChanged), this, [this] { showHeight(); });
        showHeight();
    }

    QSize size() const
    {
        const int width = width_->value();
        const int height = qRound(double(width) * shown_.height() / shown_.width());
        return QSize(width, std::max(1, height));
    }
    bool transparent() const { return transparent_->isChecked(); }
    bool overlays() const { return overlays_->isChecked(); }

private:
    void showHeight() { height_->setText(PictureChoice::tr("× %1 pixels").arg(size().height())); }

    QSize shown_;
    QSpinBox *width_;
    QLabel *height_;
    QCheckBox *transparent_;
    QCheckBox *overlays_;
};

} // namespace

bool askForPicture(QWidget *parent, const QSize &shown, PictureChoice &choice)
{
    // Qt's own dialog, which takes another row; the desktop's would not.
    QFileDialog dialog(parent, PictureChoice::tr("Save a picture"), choice.path,
                       PictureChoice::tr("Pictures (*.png *.jpg)"));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix("png");
    dialog.selectFile(choice.path);
    auto *row = new SizeRow(shown, choice, &dialog);
    if (auto *grid = qobject_cast<QGridLayout *>(dialog.layout()))
        grid->addWidget(row, grid->rowCount(), 0, 1, grid->columnCount());
    if (dialog.exec() != QDialog::Accepted)
        return false;
    choice = {dialog.selectedFiles().value(0), row->size(), row->transparent(), row->overlays()};
    return true;
}

} // namespace host
