#pragma once

#include <QString>
#include <QVariantList>

//! An SQL text with the values for its positional "?" markers, in order.
struct kvSqlStatement
{
    QString Text;
    QVariantList Values;
};
