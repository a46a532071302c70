#include "mapexport/ImportLocator.h"
#include "core/Station.h"
#include "mapexport/LogMapFields.h"
#include "mapexport/RichtungQrb.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

// What RichtungQRB leaves for a locator, as the import stores it.
std::optional<MapPosition> windowPosition(const QString& own, const QString& locator)
{
    RecordingPrompts prompts;
    Station station { prompts };
    station.settings.setText(Setting::MyLocator, own);
    LogMapFields fields;
    if (!RichtungQRB(station, fields, locator))
        return std::nullopt;
    return MapPosition { station.coordText, fields.distanceKm, fields.bearing };
}

bool sameBits(float a, float b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

} // namespace

// Each locator twice, so the second answer comes from what the import remembered.
TEST(ImportLocator, StoresWhatRichtungQrbStoresBitForBit)
{
    const QStringList locators = { "JN48OW", "jn48", "JO62QM", "JO62qm", "FN31PR", "QG62LJ", "AA00AA",
        "RR99XX", "JN48OW12", "JN48OW12AB", "jn48ow12ab", "IO91WM47", "JN4", "ZZ99", "", "JN48OW ", "JN48O",
        "KP20LE", "PM95VQ", "RE78IR" };
    for (const char* own : { "JN48OW", "jn48", "", "JN48O", "RE78IR" }) {
        ImportLocator locate { QLatin1String(own) };
        for (int pass = 0; pass < 2; ++pass) {
            for (const QString& l : locators) {
                const std::optional<MapPosition> expected = windowPosition(QLatin1String(own), l);
                MapPosition got { "before", 1.0f, 2.0f };
                ASSERT_EQ(locate(l, got), expected.has_value()) << own << " " << l.toStdString();
                const MapPosition want = expected.value_or(MapPosition { "before", 1.0f, 2.0f });
                EXPECT_EQ(got.coordText, want.coordText) << own << " " << l.toStdString();
                EXPECT_TRUE(sameBits(got.distanceKm, want.distanceKm)) << own << " " << l.toStdString();
                EXPECT_TRUE(sameBits(got.bearing, want.bearing)) << own << " " << l.toStdString();
            }
        }
    }
}
