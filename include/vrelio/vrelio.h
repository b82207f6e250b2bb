// Takes in the whole public interface of VrelIo.
#pragma once

#include <vrelio/container/chain.h>
#include <vrelio/container/records.h>
#include <vrelio/container/sample_reader.h>
#include <vrelio/export.h>
#include <vrelio/file/file.h>
#include <vrelio/file/file_access.h>
#include <vrelio/file/zipped_segment.h>
#include <vrelio/foundation/convert.h>
#include <vrelio/foundation/critical_section.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/foundation/error.h>
#include <vrelio/foundation/format_string.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/json/reader.h>
#include <vrelio/json/value.h>
#include <vrelio/json/write_xml.h>
#include <vrelio/json/xml_reader.h>
#include <vrelio/ome/types.h>
#include <vrelio/si/fraction.h>
#include <vrelio/si/value.h>
#include <vrelio/version.h>
