#pragma once

class QImage;
class QPagedPaintDevice;

namespace zanpanel {

/// A picture on a page: as large as the page has room. False when the
/// device takes nothing.
[[nodiscard]] bool printPicture(const QImage& picture, QPagedPaintDevice& device);

}  // namespace zanpanel
