#pragma once

#include <QAbstractTableModel>
#include <deque>
#include <vector>

#include "rk31/DeviceTraffic.h"

namespace rk31::sim {

// The device calls the bench shows, one row each, newest last: time, operation, arguments,
// out-values. It keeps the newest kCapacity calls.
class TrafficModel : public QAbstractTableModel {
    Q_OBJECT
  public:
    enum Column { Time, Operation, Arguments, Outcome, ColumnCount };
    static constexpr std::size_t kCapacity = 10000;

    using QAbstractTableModel::QAbstractTableModel;

    void append(std::vector<DeviceCall> calls);
    void clear();
    const DeviceCall& call(int row) const { return m_calls[static_cast<std::size_t>(row)]; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    std::deque<DeviceCall> m_calls;
};

}  // namespace rk31::sim
