#include "logbook/adif/AdifMapper.h"

#include "logbook/adif/AdifImport.h"
#include "logbook/adif/AdifMapping.h"
#include "logbook/entry/ContactSave.h"
#include "logbook/entry/ContactSummary.h"

AdifMapper::AdifMapper(std::unique_ptr<AdifReader> reader, std::optional<DxccIndex> dxcc,
    LocatorProcedure locate, LogClock::Base clock)
    : reader_(std::move(reader))
    , dxcc_(std::move(dxcc))
    , locate_(std::move(locate))
    , clock_(clock)
    , thread_([this](std::stop_token stop) { run(stop); })
{
}

AdifMapper::~AdifMapper() = default;

void AdifMapper::complete(AdifContact& c)
{
    if (dxcc_)
        AdifMapping::setEntity(c, dxcc_->find(c.callsign));
    MapPosition p;
    if (c.grid.isEmpty() || !locate_ || !locate_(c.grid, p))
        return;
    // Each number's text made once: it gives the stored value and goes into GEdata.
    const QString km = ContactSummary::numberText(p.distanceKm);
    const QString degrees = ContactSummary::numberText(p.bearing);
    c.qrb = ContactSave::storedNumber(p.distanceKm, km);
    c.qtf = ContactSave::storedNumber(p.bearing, degrees);
    c.geGridXY = p.coordText;
    SummaryValues v;
    v.callsign = c.callsign;
    v.band = c.band;
    v.date = c.date;
    v.time = c.gmt;
    v.rsts = c.rsts;
    v.rstr = c.rstr;
    v.qsl = c.qsl;
    v.prop = c.prop;
    v.comment = c.comment;
    c.geData = ContactSummary::text(v, km, degrees);
}

void AdifMapper::map(const AdifRecord& record, AdifMapped& out)
{
    out.line = record.line;
    out.notes = record.notes;
    out.refused = !AdifMapping::toContact(record, out.contact, &out.reason, &out.notes, clock_);
    if (out.refused) {
        out.callsign = record.value(QStringLiteral("CALL")).trimmed().toUpper();
        return;
    }
    out.callsign = out.contact.callsign;
    const AdifContact& c = out.contact;
    out.key = AdifImport::duplicateKey(c.callsign, c.date, c.gmt, c.band, c.mode);
    // A contact the log already has is completed too: only the importer's thread knows the log.
    complete(out.contact);
}

void AdifMapper::run(std::stop_token stop)
{
    AdifRecord record;
    bool more = true;
    while (more && !stop.stop_requested()) {
        std::vector<AdifMapped> batch;
        batch.reserve(kBatch);
        while (batch.size() < kBatch && !stop.stop_requested() && (more = reader_->next(record))) {
            map(record, batch.emplace_back());
            batch.back().end = reader_->position();
        }
        std::unique_lock lock(mutex_);
        if (!changed_.wait(lock, stop, [this] { return ready_.size() < kQueued; }))
            return; // stopped
        ready_.push_back(std::move(batch));
        finished_ = !more;
        changed_.notify_all();
    }
    // The caches of a large import take a while to free: here, not on the importer's thread.
    dxcc_.reset();
    locate_ = nullptr;
    reader_.reset();
}

const AdifMapped* AdifMapper::next()
{
    while (taken_ >= current_.size()) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return !ready_.empty() || finished_; });
        if (ready_.empty())
            return nullptr;
        current_ = std::move(ready_.front());
        ready_.pop_front();
        taken_ = 0;
        changed_.notify_all();
    }
    return &current_[taken_++];
}
