#include <vrelio/foundation/critical_section.h>

VCriticalSection::VCriticalSection() : section_(new std::recursive_mutex) {}

VCriticalSection::~VCriticalSection() { delete section_; }

void VCriticalSection::lock() { section_->lock(); }

void VCriticalSection::unlock() { section_->unlock(); }
