// Compiled against one layer library with VELLUM_PROBE_HEADER naming a header of another folder:
// builds only when the library may see that folder.
#include VELLUM_PROBE_HEADER

int vellumIncludeProbe()
{
    return 0;
}
