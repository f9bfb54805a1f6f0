#pragma once

//! Which optional columns the appointment table has (the column probe when a connection is set).
struct kvOptionalColumns
{
    bool Remark = false;
    bool Document = false;
    bool ImageID = false;
};
