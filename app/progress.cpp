// What the helper reports, applied to the window: erasing fills the first half of
// the bar and writing the second, the percentage is each phase's own.
#include "app/app_delegate.h"

#include <algorithm>

namespace oxlade {

namespace {

double halfOfBar(std::uint32_t n) { return std::min(static_cast<double>(n) * 0.5, 50.0); }

std::int32_t percentage(std::uint32_t n) {
    return static_cast<std::int32_t>(std::min(n, std::uint32_t{100}));
}

} // namespace

void AppDelegate::parseProgressFromText(std::string_view text) {
    forEachReport(text, [this](const Report& report) {
        std::visit([this](const auto& each) { apply(each); }, report);
    });
}

void AppDelegate::apply(const EraseReport& report) {
    controls_->progress.setDoubleValue(halfOfBar(report.n));
    setOperation("op.erase", percentage(report.n));
}

void AppDelegate::apply(const WriteReport& report) {
    controls_->progress.setDoubleValue(50.0 + halfOfBar(report.n));
    setOperation("op.write", percentage(report.n));
}

void AppDelegate::apply(const GeometryReport& report) {
    // Shown by the refresh at the end of the check, if it succeeds.
    setDeviceGeometry(std::string{report.line});
}

void AppDelegate::apply(const UploadComplete&) {
    controls_->progress.setDoubleValue(100.0);
    setOperation("op.done", -1);
}

} // namespace oxlade
