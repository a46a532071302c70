#pragma once
// Ctrl+C, or the TERM that stops a scripted run, closes a window the ordinary way, from its
// event loop: the main window then saves and closes its ports, or, still starting, ends without
// saving (see Form1::closeEvent). One window per process.
class QWidget;

void closeOnSignals(QWidget& window);
