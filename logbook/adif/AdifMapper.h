#pragma once
// The reading half of the ADIF import, on two threads of its own: one reads the records and
// maps them onto the log's columns, the next completes the contacts (DXCC entity, locator
// texts, GEdata); the importer takes them one by one in file order and checks for duplicates
// and stores on its thread. The reader belongs to the first thread, the DXCC index and the
// locator procedure to the second, until the mapper is destroyed, which stops and joins both.
#include "logbook/adif/AdifContact.h"
#include "logbook/adif/AdifReader.h"
#include "logbook/adif/BatchQueue.h"
#include "logbook/browse/DxccIndex.h"
#include "logbook/entry/LogClock.h"
#include "logbook/entry/MapPosition.h"

#include <memory>
#include <optional>
#include <thread>
#include <vector>

// One record as the importer takes it.
struct AdifMapped {
    int line = 0; // the record's first line
    bool refused = false;
    QString reason; // why it is refused
    QString callsign; // its CALL, trimmed and upper case ("" without one)
    AdifContact contact; // the completed contact, when not refused
    QString key; // its AdifImport::duplicateKey
    QStringList notes; // its fields kept as text, and why
    qint64 end = 0; // the reader's position after the record
};

class AdifMapper {
public:
    // `dxcc` nothing: the entity stays as the record claims it. `locate` empty: no map texts.
    AdifMapper(std::unique_ptr<AdifReader> reader, std::optional<DxccIndex> dxcc, LocatorProcedure locate,
        LogClock::Base clock);
    ~AdifMapper();
    AdifMapper(const AdifMapper&) = delete;
    AdifMapper& operator=(const AdifMapper&) = delete;

    // The next record in file order, waiting for it while it is mapped; nullptr after the last.
    // Valid until the next call.
    const AdifMapped* next();

private:
    // Enough records a batch that each thread keeps its core for a while: on two cores the three
    // threads took 1.9 s for 100 000 records in batches of 128 and 1.7 s in batches of 1024
    // (measured side by side). The first batch is still ready within about 10 ms, and a
    // cancelled import wastes no more.
    static constexpr std::size_t kBatch = 1024;
    static constexpr std::size_t kQueued = 3;

    void read(std::stop_token stop);
    void map(const AdifRecord& record, AdifMapped& out);
    void completeAll(std::stop_token stop);
    void complete(AdifContact& contact);

    std::unique_ptr<AdifReader> reader_;
    std::optional<DxccIndex> dxcc_;
    LocatorProcedure locate_;
    LogClock::Base clock_;

    BatchQueue<AdifMapped> mapped_ { kQueued };
    BatchQueue<AdifMapped> completed_ { kQueued };
    std::vector<AdifMapped> current_; // the batch being taken (importer's thread)
    std::size_t taken_ = 0;

    // Last: stopped and joined before the members they use go.
    std::jthread reading_;
    std::jthread completing_;
};
