#include "ui/sprites/wait_girl_view.h"

#include <QPainter>
#include <QTimer>

namespace oxlade {
namespace {

// The same in every colour scheme.
const QColor frameColor = QColor::fromRgbF(0.09F, 0.10F, 0.12F);
const QColor screenColor = QColor::fromRgbF(0.83F, 0.90F, 0.93F);
constexpr double frameCorner = 14;
constexpr double screenCorner = 6;

/// In the format of the window: Qt starts threads to draw images of other formats.
QImage toImage(const SpriteFrame& frame) {
    const int bytesPerRow = frame.width * static_cast<int>(spriteBytesPerPixel);
    return QImage{frame.pixels.data(), frame.width, frame.height, bytesPerRow,
                  QImage::Format_RGBX8888}
        .convertToFormat(QImage::Format_RGB32);
}

std::vector<QImage> decodedFrames() {
    std::vector<QImage> images;
    images.reserve(wait_girl_frames.size());
    for (const SpriteBytes stored : wait_girl_frames)
        images.push_back(toImage(std::get<SpriteFrame>(decodeSprite(stored))));
    return images;
}

/// The rectangle of the picture in a view of that size in points: in device pixels, of which
/// `ratio` make a point, y downwards.
QRect placeIn(const QSizeF& view, double ratio) {
    const PicturePlace place = placePicture({0, 0, view.width(), view.height()});
    const PictureRect pixels = pixelsOf(place, ratio);
    const double top = std::floor(view.height() * ratio) - pixels.y - pixels.height;
    return QRectF{pixels.x, top, pixels.width, pixels.height}.toRect();
}

} // namespace

WaitGirlView::WaitGirlView(std::function<bool()> reduceMotion, QWidget* parent)
    : QWidget{parent}, reduceMotion_{std::move(reduceMotion)}, frames_{decodedFrames()} {}

WaitGirlView::~WaitGirlView() = default;

void WaitGirlView::startWaiting() {
    const bool still = !sequence_.isRunning() && reduceMotion_ && reduceMotion_();
    const WaitingStart start = sequence_.startWaiting(still);
    update();
    if (start != WaitingStart::animated) return;
    timer_ = std::make_unique<QTimer>();
    timer_->setTimerType(Qt::PreciseTimer);
    timer_->callOnTimeout(this, [this] { tick(); });
    timer_->start(frameInterval);
}

void WaitGirlView::stopWaiting() {
    timer_.reset();
    sequence_.stopWaiting();
    update();
}

void WaitGirlView::showFrame(std::uint64_t index) {
    sequence_.showFrame(index);
    update();
}

void WaitGirlView::tick() {
    sequence_.tick();
    update();
}

void WaitGirlView::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(frameColor);
    painter.drawRoundedRect(rect(), frameCorner, frameCorner);
    painter.setBrush(screenColor);
    constexpr int inset = static_cast<int>(screenInset);
    painter.drawRoundedRect(rect().adjusted(inset, inset, -inset, -inset), screenCorner,
                            screenCorner);
    if (frameIndex() >= frames_.size()) return;
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const double ratio = painter.deviceTransform().m11();
    painter.scale(1 / ratio, 1 / ratio);
    painter.drawImage(placeIn(size(), ratio), frames_[frameIndex()]);
}

} // namespace oxlade
