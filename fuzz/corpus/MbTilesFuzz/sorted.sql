CREATE TABLE t (a, b);
INSERT INTO t VALUES (1, zeroblob(50000)), (2, zeroblob(50000)), (3, 4), (5, 6), (7, 8), (9, 0), (1, 2), (3, 4);
CREATE VIEW tiles AS SELECT x.a AS zoom_level, y.a AS tile_column, z.a AS tile_row, x.b || y.b || z.b AS tile_data FROM t x, t y, t z, t u, t v, t w ORDER BY tile_data;
CREATE TABLE metadata (name, value);
