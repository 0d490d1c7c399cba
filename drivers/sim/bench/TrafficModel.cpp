#include "sim/bench/TrafficModel.h"

#include <QBrush>
#include <iterator>

namespace rk31::sim {

void TrafficModel::append(std::vector<DeviceCall> calls, std::size_t missedBefore) {
    m_missed += missedBefore;
    if (calls.empty()) {
        return;
    }
    if (calls.size() > kCapacity) {
        m_missed += calls.size() - kCapacity;
        calls.erase(calls.begin(), calls.end() - static_cast<std::ptrdiff_t>(kCapacity));
    }
    const std::size_t total = m_calls.size() + calls.size();
    const std::size_t overflow = total > kCapacity ? total - kCapacity : 0;
    if (overflow > 0) {
        m_missed += overflow;
        beginRemoveRows({}, 0, static_cast<int>(overflow) - 1);
        m_calls.erase(m_calls.begin(), m_calls.begin() + static_cast<std::ptrdiff_t>(overflow));
        endRemoveRows();
    }
    const int first = static_cast<int>(m_calls.size());
    beginInsertRows({}, first, first + static_cast<int>(calls.size()) - 1);
    std::move(calls.begin(), calls.end(), std::back_inserter(m_calls));
    endInsertRows();
}

void TrafficModel::clear() {
    beginResetModel();
    m_calls.clear();
    m_missed = 0;
    endResetModel();
}

int TrafficModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_calls.size());
}

int TrafficModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant TrafficModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const DeviceCall& c = call(index.row());
    if (role == Qt::ForegroundRole && c.threw) {
        return QBrush(QColor(176, 0, 32));
    }
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole) {
        return {};
    }
    switch (index.column()) {
        case Time:
            return c.at.toString(QStringLiteral("HH:mm:ss.zzz"));
        case Operation:
            return c.operation;
        case Arguments:
            return c.arguments.join(QStringLiteral(", "));
        case Outcome:
            return c.threw ? QStringLiteral("!! ") + c.outcome : c.outcome;
        default:
            return {};
    }
}

QVariant TrafficModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    static const char* const titles[] = {"Time", "Operation", "Arguments", "Out-values"};
    return section >= 0 && section < ColumnCount ? QString::fromLatin1(titles[section])
                                                 : QVariant();
}

}  // namespace rk31::sim
