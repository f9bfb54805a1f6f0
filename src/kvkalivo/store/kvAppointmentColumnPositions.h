#pragma once

#include "kvFields.h"

/*!
    \brief Where the appointment table's columns stand in a recordset's fields, looked up once
    per recordset by name; -1 for a column it lacks, which kvFields::Value() refuses with 3265.
*/
struct kvAppointmentColumnPositions
{
    int DateID = -1;
    int DateBegin = -1;
    int DateEnd = -1;
    int Name = -1;
    int Remark = -1;
    int Document = -1;
    int ImageID = -1;

    static kvAppointmentColumnPositions Of(const kvFields &fields)
    {
        const auto at = [&fields](const char *name) { return fields.IndexOf(QString::fromLatin1(name)); };
        return {at("DateID"), at("DateBegin"), at("DateEnd"), at("Name"), at("Remark"), at("Document"), at("ImageID")};
    }
};
