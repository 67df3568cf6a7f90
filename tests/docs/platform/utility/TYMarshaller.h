#ifndef PLATFORM_TYMARSHALLER_H
#define PLATFORM_TYMARSHALLER_H

class TYMarshaller
{
public:
    class Buffer
    {
    public:
        void addTail(void const*, unsigned);
    };

    TYMarshaller();
    TYMarshaller(TYMarshaller const&);
    TYMarshaller& operator=(TYMarshaller const&);
    ~TYMarshaller();
    Buffer& copyOnWrite();

private:
    void* bytes_;
};

#endif
