#pragma once

//! Which optional columns the appointment table has (Part 2.1's column probe).
struct kvOptionalColumns
{
    bool Remark = false;
    bool Document = false;
    bool ImageID = false;
};
