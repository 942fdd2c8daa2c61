#pragma once

#include <QtCore/QString>

namespace zanpanel {

class InstrumentPage;
class Shell;

/// Brings the simulated instrument of a page into the state that a picture is to show, as an
/// operator would, then saves the picture of the window and ends the program: 0, or 1 when it
/// cannot be saved.
void takePicture(Shell& shell, InstrumentPage& page, const QString& scene, const QString& file);

}  // namespace zanpanel
