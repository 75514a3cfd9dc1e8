#pragma once

namespace brindlet::ui {

/// Gives the stock controls that the app's popups use the plain Basic style, whatever the
/// desktop's. Chosen through the environment rather than the controls library, so that the app
/// starts without loading that library: it is read only when a popup first needs the controls.
/// Call before the first window loads.
void chooseControlsStyle();

}  // namespace brindlet::ui
