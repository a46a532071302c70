#pragma once
// The one context every window and service shares: the settings table, the operator prompts
// and the process-wide values the windows hand to each other. main() creates one; tests
// create their own.
#include "core/PromptGate.h"
#include "core/SettingsTable.h"

#include <QString>

class Station {
public:
    explicit Station(Prompts& prompts)
        : prompts(prompts)
    {
    }
    Station(const Station&) = delete;
    Station& operator=(const Station&) = delete;

    SettingsTable settings;
    // Every message to the operator goes through here (see PromptGate).
    PromptGate prompts;

    // Copies of the own station kept up to date by the settings dialog.
    QString myCall;
    QString myLocator;

    // Set by every locator check: true when the last locator tested was not valid.
    bool locatorInvalid = false;

    // Last converted position as "longitude,latitude" with a decimal point (map export).
    QString coordText;
    // Home position (own locator's south-west corner), longitude and latitude in degrees.
    double homeLon = 0.0;
    double homeLat = 0.0;
    // Home coordinates of the map ("longitude,latitude"), set only by the logbook's locator
    // procedure (the main window runs it at start); empty while the own locator is not valid,
    // and the map then has no home point and no lines.
    QString homeCoords;

    // LIKE pattern of the logbook's current band ("144%", "14200%", ...).
    QString bandPattern;

    // Map export state: line colour carried from record to record, document name,
    // square transparency text and the two line switches.
    QString lineColour;
    QString documentName;
    QString transparency;
    bool lineBeacons = false;
    bool lineStations = false;

    // Values of the last cluster spot picked by the operator.
    QString spotQrg;
    QString spotCall;
    QString spotRemark;

    // Which rig port the CAT commands go to, and the main window's frequency text in 10 Hz.
    QString rigPortName;
    QString frequencyText;

    // Set while a tuning or elevation button is held down.
    bool hold = false;

    // Database connection text, set when the logbook window object is created.
    QString dbConnection;
};
