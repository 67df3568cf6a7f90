#ifndef PLATFORM_TYMARSHALLER_H
#define PLATFORM_TYMARSHALLER_H

class TYMarshaller
{
public:
    class Buffer
    {
    public:
        void addTail(void const*, unsigned);
        unsigned size() const;
        bool operator==(Buffer const&) const;
    };

    TYMarshaller();
    TYMarshaller(TYMarshaller const&);
    TYMarshaller& operator=(TYMarshaller const&);
    ~TYMarshaller();
    Buffer& copyOnWrite();
    Buffer const& buffer() const;

private:
    void* bytes_;
};

#endif
