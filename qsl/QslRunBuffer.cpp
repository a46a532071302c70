#include "qsl/QslRunBuffer.h"

bool QslRunBuffer::append(const QslContact& c)
{
    if (isFull())
        return false;
    const auto i = static_cast<std::size_t>(count_);
    date[i] = c.date;
    time[i] = c.time;
    callsign[i] = c.callsign;
    band[i] = c.band;
    mode[i] = c.mode;
    rsts[i] = c.rsts;
    qrb[i] = c.qrb;
    qtf[i] = c.qtf;
    manager[i] = c.manager;
    ++count_;
    return true;
}

QslContact QslRunBuffer::at(int index) const
{
    const auto i = static_cast<std::size_t>(index);
    return { date.at(i), time.at(i), callsign.at(i), band.at(i), mode.at(i), rsts.at(i), qrb.at(i), qtf.at(i),
        manager.at(i) };
}

void QslRunBuffer::clear()
{
    for (auto* column : { &date, &time, &callsign, &band, &mode, &rsts, &qrb, &qtf, &manager })
        column->fill(QString());
    count_ = 0;
}
