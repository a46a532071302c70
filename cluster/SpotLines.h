#pragma once
// The "dx " spot lines the cluster window prepares, the node address chosen by the settings,
// and the conversions between the main window's frequency text (10 Hz units) and kHz.
#include <QString>

class SettingsTable;

namespace SpotLines {

// "<Tr>", "<Rs>" or "<Es>" for propagation option 1, 2, 3; empty for anything else.
QString propagationTag(int option);

// Option 1: "dx " + qrg + " " + call + tag + first 6 characters of the locator.
QString fromBoxes(const QString& qrg, const QString& call, int propagation, const QString& locator);

// Option 2: "dx " + qrg + " " + call + " " + remark + tag + first 6 characters of the locator.
QString fromSpot(
    const QString& qrg, const QString& call, const QString& remark, int propagation, const QString& locator);

// "14410000" (10 Hz units) -> "144100.0" (kHz, one decimal, the form cluster nodes take).
// Non-digits are ignored; no digits at all give "".
QString qrgFromFrequencyText(const QString& frequencyText);

// A spot frequency in kHz ("144174.0", "14025") -> the main window's 10 Hz text ("14417400");
// "" when the text is no positive number.
QString frequencyTextFromQrg(const QString& qrg);

} // namespace SpotLines

struct ClusterServer {
    QString host;
    quint16 port = 0;
};

// Server 1 (settings 20, 21) or 2 (22, 23) by setting 24; any other choice leaves the reset
// address: host "0", port 0.
ClusterServer chooseClusterServer(const SettingsTable& settings);
