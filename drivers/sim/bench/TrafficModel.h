#pragma once

#include <QAbstractTableModel>
#include <deque>
#include <vector>

#include "rk31/DeviceTraffic.h"

namespace rk31::sim {

// The device calls the bench shows, one row each, newest last: time, operation, arguments,
// out-values. It keeps the newest kCapacity calls and counts those it can no longer show.
class TrafficModel : public QAbstractTableModel {
    Q_OBJECT
  public:
    enum Column { Time, Operation, Arguments, Outcome, ColumnCount };
    static constexpr std::size_t kCapacity = 10000;

    using QAbstractTableModel::QAbstractTableModel;

    // `missedBefore`: calls the recorder dropped before these.
    void append(std::vector<DeviceCall> calls, std::size_t missedBefore = 0);
    void clear();
    // The calls since the last clear that are not shown: dropped before they reached the view,
    // or pushed out of it by newer ones.
    std::size_t missed() const { return m_missed; }
    const DeviceCall& call(int row) const { return m_calls[static_cast<std::size_t>(row)]; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    std::deque<DeviceCall> m_calls;
    std::size_t m_missed = 0;
};

}  // namespace rk31::sim
