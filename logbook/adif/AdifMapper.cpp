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
    , reading_([this](std::stop_token stop) { read(stop); })
    , completing_([this](std::stop_token stop) { completeAll(stop); })
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
}

void AdifMapper::read(std::stop_token stop)
{
    LogClock::readZone(); // once for the file, not once a contact
    AdifRecord record;
    for (bool more = true; more;) {
        std::vector<AdifMapped> batch;
        batch.reserve(kBatch);
        while (batch.size() < kBatch && (more = reader_->next(record))) {
            map(record, batch.emplace_back());
            batch.back().end = reader_->position();
        }
        if (!mapped_.push(std::move(batch), !more, stop))
            return;
    }
    reader_.reset(); // the file's bytes
}

void AdifMapper::completeAll(std::stop_token stop)
{
    std::vector<AdifMapped> batch;
    while (mapped_.pop(batch, stop)) {
        // A contact the log already has is completed too: only the importer's thread knows the log.
        for (AdifMapped& m : batch) {
            if (!m.refused)
                complete(m.contact);
        }
        if (!completed_.push(std::move(batch), false, stop))
            return;
        batch.clear();
    }
    if (stop.stop_requested())
        return;
    completed_.push({}, true, stop);
    // The caches of a large import take a while to free: here, not on the importer's thread.
    dxcc_.reset();
    locate_ = nullptr;
}

const AdifMapped* AdifMapper::next()
{
    while (taken_ >= current_.size()) {
        current_.clear();
        if (!completed_.pop(current_))
            return nullptr;
        taken_ = 0;
    }
    return &current_[taken_++];
}
