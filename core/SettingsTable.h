#pragma once
// The station settings table: 101 typed elements, of which 0 to 46 are loaded from and saved
// to "Kestrel.txt". Every window reads and writes its settings here by fixed index.
#include "core/SettingValue.h"

#include <array>

namespace Setting {
enum Index : int {
    CwSpeed = 0,
    TxtSel = 1,
    CwLoop = 2,
    CwText1 = 3,
    CwText2 = 4,
    MyCall = 5,
    MyLocator = 6,
    Com1Used = 7,
    Com1Port = 8,
    Com1Settings = 9,
    Com2Used = 10,
    Com2Port = 11,
    Com2Settings = 12,
    Com3Used = 13,
    Com3Port = 14,
    Com3Settings = 15,
    Com4Used = 16,
    Com4Port = 17,
    Com4Settings = 18,
    Label29Caption = 19,
    Cluster1Host = 20,
    Cluster1Port = 21,
    Cluster2Host = 22,
    Cluster2Port = 23,
    ClusterChoice = 24,
    ClusterOption1 = 25,
    ClusterOption2 = 26,
    Kept27 = 27, // kept and written back; nothing reads these three
    Kept28 = 28,
    BeaconCount = 29,
    Kept30 = 30,
    LogbookNumber = 31,
    LogbookText = 32,
    MainState = 33,
    RigFrequency = 34,
    QslInfo = 35,
    QslLine2 = 36,
    QslLine3 = 37,
    QslLine4 = 38,
    QslAddress = 39,
    QslFoot = 40,
    ColourByProp = 41,
    Transparency = 42,
    LineBeacons = 43,
    LineStations = 44,
    Check2 = 45,
    Check3 = 46,
};
constexpr int TableSize = 101;
constexpr int SavedCount = 47;
} // namespace Setting

class SettingsTable {
public:
    SettingValue& operator[](int index) { return values_.at(index); }
    const SettingValue& operator[](int index) const { return values_.at(index); }

    qint32 intAt(int index) const { return values_.at(index).toInt(); }
    bool boolAt(int index) const { return values_.at(index).toBool(); }
    QString textAt(int index) const { return values_.at(index).toText(); }

    void setInt16(int index, qint16 v) { values_.at(index) = SettingValue::int16(v); }
    void setInt32(int index, qint32 v) { values_.at(index) = SettingValue::int32(v); }
    void setBool(int index, bool v) { values_.at(index) = SettingValue::boolean(v); }
    void setText(int index, const QString& v) { values_.at(index) = SettingValue::text(v); }

    void clear() { values_.fill(SettingValue()); }

private:
    std::array<SettingValue, Setting::TableSize> values_;
};
